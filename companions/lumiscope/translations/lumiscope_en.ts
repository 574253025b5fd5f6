<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="en">
<context>
    <name>lumiscope::ContentPanel</name>
    <message>
        <source>Close (Esc)</source>
        <translation>Close (Esc)</translation>
    </message>
</context>
<context>
    <name>lumiscope::PhotoPanel</name>
    <message>
        <source>Loading...</source>
        <translation>Loading...</translation>
    </message>
    <message>
        <source>The photo cannot be shown.</source>
        <translation>The photo cannot be shown.</translation>
    </message>
</context>
<context>
    <name>lumiscope::TourLoader</name>
    <message>
        <source>The tour %1 has no panoramas.</source>
        <translation>The tour %1 has no panoramas.</translation>
    </message>
    <message>
        <source>The tour %1 is empty.</source>
        <translation>The tour %1 is empty.</translation>
    </message>
    <message>
        <source>The tour %1 cannot be opened: %2</source>
        <translation>The tour %1 cannot be opened: %2</translation>
    </message>
    <message>
        <source>There is no file %1.</source>
        <translation>There is no file %1.</translation>
    </message>
    <message>
        <source>The file %1 is not a tour.</source>
        <translation>The file %1 is not a tour.</translation>
    </message>
    <message>
        <source>The tour %1 is damaged: its end is missing.</source>
        <translation>The tour %1 is damaged: its end is missing.</translation>
    </message>
    <message>
        <source>The tour %1 cannot be shown: %2.</source>
        <translation>The tour %1 cannot be shown: %2.</translation>
    </message>
    <message>
        <source>The tour %1 cannot be unpacked: %2</source>
        <translation>The tour %1 cannot be unpacked: %2</translation>
    </message>
</context>
<context>
    <name>lumiscope::ViewerWindow</name>
    <message>
        <source>Start the viewer with a tour file (.roa).</source>
        <translation>Start the viewer with a tour file (.roa).</translation>
    </message>
    <message>
        <source>%1 - Lumiscope</source>
        <translation>%1 - Lumiscope</translation>
    </message>
    <message>
        <source>No temporary folder can be made: %1</source>
        <translation>No temporary folder can be made: %1</translation>
    </message>
    <message>
        <source>Loading...</source>
        <translation>Loading...</translation>
    </message>
    <message>
        <source>This panorama cannot be shown. Its markers and the map lead on.</source>
        <translation>This panorama cannot be shown. Its markers and the map lead on.</translation>
    </message>
    <message>
        <source>Lumiscope</source>
        <translation>Lumiscope</translation>
    </message>
    <message>
        <source>Zoom in (+)</source>
        <translation>Zoom in (+)</translation>
    </message>
    <message>
        <source>Zoom out (-)</source>
        <translation>Zoom out (-)</translation>
    </message>
    <message>
        <source>Full screen (F11)</source>
        <translation>Full screen (F11)</translation>
    </message>
    <message>
        <source>Show or fold the map (M)</source>
        <translation>Show or fold the map (M)</translation>
    </message>
    <message>
        <source>The graphics driver of this computer cannot show panoramas: OpenGL 2.1 is needed.</source>
        <translation>The graphics driver of this computer cannot show panoramas: OpenGL 2.1 is needed.</translation>
    </message>
</context>
<context>
    <name>lumiscope::WalkView</name>
    <message>
        <source>%1 (%2 m)</source>
        <extracomment>%1 is the place&apos;s name, %2 how many metres away it is</extracomment>
        <translation>%1 (%2 m)</translation>
    </message>
</context>
</TS>
