<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>NexomapLinker</name>
    <message>
        <source>The linking library %1 is missing.</source>
        <translation>The linking library %1 is missing.</translation>
    </message>
    <message>
        <source>The linking library cannot be loaded: %1.</source>
        <translation>The linking library cannot be loaded: %1.</translation>
    </message>
    <message>
        <source>The linking library %1 lacks %2.</source>
        <translation>The linking library %1 lacks %2.</translation>
    </message>
</context>
<context>
    <name>PanoMatchEditor</name>
    <message>
        <source>Orvanta 漫游创作工具</source>
        <translation>Orvanta Tour Authoring Tool</translation>
    </message>
    <message>
        <source>添加一对特征点</source>
        <translation>Add Pair of Feature Points</translation>
    </message>
    <message>
        <source>删除选中特征点</source>
        <translation>Delete Selected Feature Points</translation>
    </message>
    <message>
        <source>添加全景链接</source>
        <translation>Add Panorama Link</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <source>Add Panorama Link</source>
        <translation>Add Panorama Link</translation>
    </message>
    <message>
        <source>The number of feature points cannot be less than 3!</source>
        <translation>The number of feature points cannot be less than 3!</translation>
    </message>
</context>
<context>
    <name>OpenTour</name>
    <message>
        <source>its description has no %1</source>
        <translation>its description has no %1</translation>
    </message>
    <message>
        <source>its description cannot be read: %1</source>
        <translation>its description cannot be read: %1</translation>
    </message>
    <message>
        <source>the name of a file inside it is not a bare file name</source>
        <translation>the name of a file inside it is not a bare file name</translation>
    </message>
    <message>
        <source>it declares a document type</source>
        <translation>it declares a document type</translation>
    </message>
    <message>
        <source>an element has too many attributes</source>
        <translation>an element has too many attributes</translation>
    </message>
    <message>
        <source>it is too long</source>
        <translation>it is too long</translation>
    </message>
    <message>
        <source>it is not UTF-8</source>
        <translation>it is not UTF-8</translation>
    </message>
    <message>
        <source>elements stand too deep in each other</source>
        <translation>elements stand too deep in each other</translation>
    </message>
    <message>
        <source>line %1, column %2: %3</source>
        <translation>line %1, column %2: %3</translation>
    </message>
    <message>
        <source>it is not a tour file</source>
        <translation>it is not a tour file</translation>
    </message>
    <message>
        <source>it is cut short</source>
        <translation>it is cut short</translation>
    </message>
</context>
<context>
    <name>SaveTour</name>
    <message>
        <source>it is a folder</source>
        <translation>it is a folder</translation>
    </message>
    <message>
        <source>its unfinished remains cannot be removed</source>
        <translation>its unfinished remains cannot be removed</translation>
    </message>
    <message>
        <source>%1 cannot be read to its end</source>
        <translation>%1 cannot be read to its end</translation>
    </message>
</context>
<context>
    <name>Tourwright</name>
    <message>
        <source> is empty!</source>
        <translation> is empty!</translation>
    </message>
    <message>
        <source>Cannot be read back once saved: %1 &quot;%2&quot;</source>
        <translation>Cannot be read back once saved: %1 &quot;%2&quot;</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Yes</translation>
    </message>
    <message>
        <source>No</source>
        <translation>No</translation>
    </message>
    <message>
        <source>Create Panorama Roaming</source>
        <translation>Create Panorama Roaming</translation>
    </message>
    <message>
        <source>Whether to save the current roaming file?</source>
        <translation>Whether to save the current roaming file?</translation>
    </message>
    <message>
        <source>Open Panorama Roaming</source>
        <translation>Open Panorama Roaming</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Exit</translation>
    </message>
    <message>
        <source>Save As</source>
        <translation>Save As</translation>
    </message>
    <message>
        <source>The file already exists. Is it overwritten?</source>
        <translation>The file already exists. Is it overwritten?</translation>
    </message>
    <message>
        <source>Add Panorama File</source>
        <translation>Add Panorama File</translation>
    </message>
    <message>
        <source>All panoramas must either all contain radar data or none of them. Panoramas without radar data are automatically deleted!</source>
        <translation>All panoramas must either all contain radar data or none of them. Panoramas without radar data are automatically deleted!</translation>
    </message>
    <message>
        <source>All panoramas must either all contain radar data or none of them. Panoramas with radar data are automatically deleted!</source>
        <translation>All panoramas must either all contain radar data or none of them. Panoramas with radar data are automatically deleted!</translation>
    </message>
    <message>
        <source>Add Panorama Link</source>
        <translation>Add Panorama Link</translation>
    </message>
    <message>
        <source>The selected panoramas cannot be the same!</source>
        <translation>The selected panoramas cannot be the same!</translation>
    </message>
    <message>
        <source>Have a panoramic link with the same name!</source>
        <translation>Have a panoramic link with the same name!</translation>
    </message>
    <message>
        <source>Preview Panorama Roaming</source>
        <translation>Preview Panorama Roaming</translation>
    </message>
    <message>
        <source>Please add panoramas first!</source>
        <translation>Please add panoramas first!</translation>
    </message>
    <message>
        <source>Create Map</source>
        <translation>Create Map</translation>
    </message>
    <message>
        <source>Some panoramas are not connected, do you want to continue anyway?</source>
        <translation>Some panoramas are not connected, do you want to continue anyway?</translation>
    </message>
    <message>
        <source>Delete Points in Point Cloud</source>
        <translation>Delete Points in Point Cloud</translation>
    </message>
    <message>
        <source>The selected points in the point cloud will be deleted. Do you want to continue?</source>
        <translation>The selected points in the point cloud will be deleted. Do you want to continue?</translation>
    </message>
    <message>
        <source>Panorama Linking</source>
        <translation>Panorama Linking</translation>
    </message>
    <message>
        <source>Panoramas cannot be linked.</source>
        <translation>Panoramas cannot be linked.</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>The folder %1 is in use by another running instance of this program.</source>
        <translation>The folder %1 is in use by another running instance of this program.</translation>
    </message>
    <message>
        <source>File </source>
        <translation>File </translation>
    </message>
    <message>
        <source>Save File</source>
        <translation>Save File</translation>
    </message>
    <message>
        <source> save failed!</source>
        <translation> save failed!</translation>
    </message>
    <message>
        <source>Open File</source>
        <translation>Open File</translation>
    </message>
    <message>
        <source> open failed!</source>
        <translation> open failed!</translation>
    </message>
    <message>
        <source>Select the pno file (multiple selection is supported)</source>
        <translation>Select the pno file (multiple selection is supported)</translation>
    </message>
    <message>
        <source>Select jpg File</source>
        <translation>Select jpg File</translation>
    </message>
    <message>
        <source>jpg File(*.jpg)</source>
        <translation>jpg File(*.jpg)</translation>
    </message>
    <message>
        <source>pno File(*.pno)</source>
        <translation>pno File(*.pno)</translation>
    </message>
    <message>
        <source>roa File(*.roa)</source>
        <translation>roa File(*.roa)</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Auto</translation>
    </message>
    <message>
        <source>Panorama 1</source>
        <translation>Panorama 1</translation>
    </message>
    <message>
        <source>Panorama 2</source>
        <translation>Panorama 2</translation>
    </message>
    <message>
        <source>Image Size</source>
        <translation>Image Size</translation>
    </message>
    <message>
        <source>Hotspot Title</source>
        <translation>Hotspot Title</translation>
    </message>
    <message>
        <source>Content Length</source>
        <translation>Content Length</translation>
    </message>
    <message>
        <source>Unnamed tour</source>
        <translation>Unnamed tour</translation>
    </message>
    <message>
        <source>Panoramas: %1</source>
        <translation>Panoramas: %1</translation>
    </message>
    <message>
        <source>Completing the links</source>
        <translation>Completing the links</translation>
    </message>
    <message>
        <source>Merging the point clouds, which may take minutes</source>
        <translation>Merging the point clouds, which may take minutes</translation>
    </message>
    <message>
        <source>Writing the map files into %1</source>
        <translation>Writing the map files into %1</translation>
    </message>
    <message>
        <source>Links: %1</source>
        <translation>Links: %1</translation>
    </message>
    <message>
        <source>Upload Panorama Roaming</source>
        <translation>Upload Panorama Roaming</translation>
    </message>
    <message>
        <source>Upload File</source>
        <translation>Upload File</translation>
    </message>
    <message>
        <source>Invalid Email!</source>
        <translation>Invalid Email!</translation>
    </message>
    <message>
        <source>Invalid Password!</source>
        <translation>Invalid Password!</translation>
    </message>
    <message>
        <source>Invalid Album Name!</source>
        <translation>Invalid Album Name!</translation>
    </message>
    <message>
        <source>Error accessing %1: </source>
        <translation>Error accessing %1: </translation>
    </message>
    <message>
        <source>Error accessing %1</source>
        <translation>Error accessing %1</translation>
    </message>
    <message>
        <source>Incorrect password! You can retry </source>
        <translation>Incorrect password! You can retry </translation>
    </message>
    <message>
        <source> times today</source>
        <translation> times today</translation>
    </message>
    <message>
        <source>Incorrect email</source>
        <translation>Incorrect email</translation>
    </message>
    <message>
        <source>Insufficient cloud storage</source>
        <translation>Insufficient cloud storage</translation>
    </message>
    <message>
        <source>Error when create album</source>
        <translation>Error when create album</translation>
    </message>
    <message>
        <source>Error model file name: </source>
        <translation>Error model file name: </translation>
    </message>
    <message>
        <source>Error photo file name: </source>
        <translation>Error photo file name: </translation>
    </message>
    <message>
        <source>Uploading completed!</source>
        <translation>Uploading completed!</translation>
    </message>
</context>
<context>
    <name>TourwrightClass</name>
    <message>
        <source>Orvanta 漫游创作工具</source>
        <translation>Orvanta Tour Authoring Tool</translation>
    </message>
    <message>
        <source>添加全景点</source>
        <translation>Add Panorama</translation>
    </message>
    <message>
        <source>删除全景点</source>
        <translation>Delete Panorama</translation>
    </message>
    <message>
        <source>设置全景链接</source>
        <translation>Panorama Links</translation>
    </message>
    <message>
        <source>设置起始全景点</source>
        <translation>Start Panorama</translation>
    </message>
    <message>
        <source>选择起始全景点</source>
        <translation>Start panorama</translation>
    </message>
    <message>
        <source>删除全景链接</source>
        <translation>Delete Link</translation>
    </message>
    <message>
        <source>自动生成全景链接</source>
        <translation>Generate Links Automatically</translation>
    </message>
    <message>
        <source>手动添加全景链接</source>
        <translation>Add Link by Hand</translation>
    </message>
    <message>
        <source>选择一个全景点</source>
        <translation>One panorama</translation>
    </message>
    <message>
        <source>选择另一个全景点</source>
        <translation>Other panorama</translation>
    </message>
    <message>
        <source>自动完善全景链接并生成导航图</source>
        <translation>Complete Links and Generate Map</translation>
    </message>
    <message>
        <source>导航图输出设置</source>
        <translation>Navigation Map Output</translation>
    </message>
    <message>
        <source>导航图模式</source>
        <translation>Map mode</translation>
    </message>
    <message>
        <source>使用黑白2D平面图作为导航图</source>
        <translation>Use a black-and-white 2D plan as navigation map</translation>
    </message>
    <message>
        <source>2D平面图</source>
        <translation>2D plan</translation>
    </message>
    <message>
        <source>使用彩色3D点云作为导航图</source>
        <translation>Use a coloured 3D point cloud as navigation map</translation>
    </message>
    <message>
        <source>3D点云</source>
        <translation>3D point cloud</translation>
    </message>
    <message>
        <source>拍摄场景</source>
        <translation>Scene</translation>
    </message>
    <message>
        <source>自动去除天花板且进行点云插值</source>
        <translation>Remove the ceiling and interpolate the point cloud</translation>
    </message>
    <message>
        <source>室内</source>
        <translation>Indoor</translation>
    </message>
    <message>
        <source>不去除天花板且不进行点云插值</source>
        <translation>Keep the ceiling, do not interpolate the point cloud</translation>
    </message>
    <message>
        <source>室外</source>
        <translation>Outdoor</translation>
    </message>
    <message>
        <source>点云密度</source>
        <translation>Point density</translation>
    </message>
    <message>
        <source>适合1千平方米以下的场景</source>
        <translation>For scenes under 1,000 m²</translation>
    </message>
    <message>
        <source>高</source>
        <translation>High</translation>
    </message>
    <message>
        <source>适合1千到1万平方米的场景</source>
        <translation>For scenes of 1,000 to 10,000 m²</translation>
    </message>
    <message>
        <source>中</source>
        <translation>Medium</translation>
    </message>
    <message>
        <source>适合1万平方米以上的场景</source>
        <translation>For scenes over 10,000 m²</translation>
    </message>
    <message>
        <source>低</source>
        <translation>Low</translation>
    </message>
    <message>
        <source>输出拼合后的PTS点云</source>
        <translation>Also write PTS cloud</translation>
    </message>
    <message>
        <source>原始点云可能占用1GB以上存储空间且需要更长时间</source>
        <translation>The raw point cloud may take more than 1 GB of storage and more time</translation>
    </message>
    <message>
        <source>输出拼合后的二进制点云</source>
        <translation>Also write binary cloud</translation>
    </message>
    <message>
        <source>设置热点</source>
        <translation>Hotspots</translation>
    </message>
    <message>
        <source>图片</source>
        <translation>Photos</translation>
    </message>
    <message>
        <source>设置图片热点</source>
        <translation>Photo Hotspots</translation>
    </message>
    <message>
        <source>添加图片热点</source>
        <translation>Add Photo</translation>
    </message>
    <message>
        <source>删除图片热点</source>
        <translation>Delete Photo</translation>
    </message>
    <message>
        <source>标题</source>
        <translation>Title</translation>
    </message>
    <message>
        <source>选择图片</source>
        <translation>Choose Picture</translation>
    </message>
    <message>
        <source>文字</source>
        <translation>Texts</translation>
    </message>
    <message>
        <source>设置文字热点</source>
        <translation>Text Hotspots</translation>
    </message>
    <message>
        <source>添加文字热点</source>
        <translation>Add Text</translation>
    </message>
    <message>
        <source>删除文字热点</source>
        <translation>Delete Text</translation>
    </message>
    <message>
        <source>内容</source>
        <translation>Content</translation>
    </message>
    <message>
        <source>文件</source>
        <translation>File</translation>
    </message>
    <message>
        <source>预览</source>
        <translation>Preview</translation>
    </message>
    <message>
        <source>上传</source>
        <translation>Upload</translation>
    </message>
    <message>
        <source>新建</source>
        <translation>New</translation>
    </message>
    <message>
        <source>打开</source>
        <translation>Open</translation>
    </message>
    <message>
        <source>保存</source>
        <translation>Save</translation>
    </message>
    <message>
        <source>另存为</source>
        <translation>Save As</translation>
    </message>
    <message>
        <source>退出</source>
        <translation>Exit</translation>
    </message>
</context>
<context>
    <name>UnreadableField</name>
    <message>
        <source>panorama identity</source>
        <translation>panorama identity</translation>
    </message>
    <message>
        <source>panorama name</source>
        <translation>panorama name</translation>
    </message>
    <message>
        <source>file name of the panorama</source>
        <translation>file name of the panorama</translation>
    </message>
    <message>
        <source>caption of the text</source>
        <translation>caption of the text</translation>
    </message>
    <message>
        <source>content of the text</source>
        <translation>content of the text</translation>
    </message>
    <message>
        <source>caption of the photo</source>
        <translation>caption of the photo</translation>
    </message>
    <message>
        <source>file name of the photo</source>
        <translation>file name of the photo</translation>
    </message>
</context>
<context>
    <name>UploadManager</name>
    <message>
        <source>Orvanta 漫游创作工具</source>
        <translation>Orvanta Tour Authoring Tool</translation>
    </message>
    <message>
        <source>云空间账号(Email):</source>
        <translation>Cloud account (e-mail):</translation>
    </message>
    <message>
        <source>密码:</source>
        <translation>Password:</translation>
    </message>
    <message>
        <source>相册名:</source>
        <translation>Album name:</translation>
    </message>
    <message>
        <source>上传</source>
        <translation>Upload</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>Cancel</translation>
    </message>
</context>
</TS>
