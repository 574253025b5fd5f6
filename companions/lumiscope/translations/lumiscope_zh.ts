<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>lumiscope::ContentPanel</name>
    <message>
        <source>Close (Esc)</source>
        <translation>关闭 (Esc)</translation>
    </message>
</context>
<context>
    <name>lumiscope::PhotoPanel</name>
    <message>
        <source>Loading...</source>
        <translation>正在载入…</translation>
    </message>
    <message>
        <source>The photo cannot be shown.</source>
        <translation>无法显示此照片。</translation>
    </message>
</context>
<context>
    <name>lumiscope::TourLoader</name>
    <message>
        <source>The tour %1 has no panoramas.</source>
        <translation>漫游 %1 中没有全景图。</translation>
    </message>
    <message>
        <source>The tour %1 is empty.</source>
        <translation>漫游 %1 是空的。</translation>
    </message>
    <message>
        <source>The tour %1 cannot be opened: %2</source>
        <translation>无法打开漫游 %1：%2</translation>
    </message>
    <message>
        <source>There is no file %1.</source>
        <translation>没有文件 %1。</translation>
    </message>
    <message>
        <source>The file %1 is not a tour.</source>
        <translation>文件 %1 不是漫游文件。</translation>
    </message>
    <message>
        <source>The tour %1 is damaged: its end is missing.</source>
        <translation>漫游 %1 已损坏：文件不完整。</translation>
    </message>
    <message>
        <source>The tour %1 cannot be shown: %2.</source>
        <translation>无法显示漫游 %1：%2。</translation>
    </message>
    <message>
        <source>The tour %1 cannot be unpacked: %2</source>
        <translation>无法解压漫游 %1：%2</translation>
    </message>
</context>
<context>
    <name>lumiscope::ViewerWindow</name>
    <message>
        <source>Start the viewer with a tour file (.roa).</source>
        <translation>请用漫游文件 (.roa) 启动本程序。</translation>
    </message>
    <message>
        <source>%1 - Lumiscope</source>
        <translation>%1 - 望远阁</translation>
    </message>
    <message>
        <source>No temporary folder can be made: %1</source>
        <translation>无法建立临时文件夹：%1</translation>
    </message>
    <message>
        <source>Loading...</source>
        <translation>正在载入…</translation>
    </message>
    <message>
        <source>This panorama cannot be shown. Its markers and the map lead on.</source>
        <translation>无法显示此全景图。可通过地面标记或导航图前往别处。</translation>
    </message>
    <message>
        <source>Lumiscope</source>
        <translation>望远阁</translation>
    </message>
    <message>
        <source>Zoom in (+)</source>
        <translation>放大 (+)</translation>
    </message>
    <message>
        <source>Zoom out (-)</source>
        <translation>缩小 (-)</translation>
    </message>
    <message>
        <source>Full screen (F11)</source>
        <translation>全屏 (F11)</translation>
    </message>
    <message>
        <source>Show or fold the map (M)</source>
        <translation>显示或收起导航图 (M)</translation>
    </message>
    <message>
        <source>The graphics driver of this computer cannot show panoramas: OpenGL 2.1 is needed.</source>
        <translation>此计算机的显卡驱动无法显示全景图：需要 OpenGL 2.1。</translation>
    </message>
</context>
<context>
    <name>lumiscope::WalkView</name>
    <message>
        <source>%1 (%2 m)</source>
        <extracomment>%1 is the place&apos;s name, %2 how many metres away it is</extracomment>
        <translation>%1（%2 米）</translation>
    </message>
</context>
</TS>
