<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>NexomapLinker</name>
    <message>
        <source>The linking library %1 is missing.</source>
        <translation>缺少链接库 %1。</translation>
    </message>
    <message>
        <source>The linking library cannot be loaded: %1.</source>
        <translation>无法加载链接库：%1。</translation>
    </message>
    <message>
        <source>The linking library %1 lacks %2.</source>
        <translation>链接库 %1 缺少 %2。</translation>
    </message>
</context>
<context>
    <name>PanoMatchEditor</name>
    <message>
        <source>Orvanta 漫游创作工具</source>
        <translation>Orvanta 漫游创作工具</translation>
    </message>
    <message>
        <source>添加一对特征点</source>
        <translation>添加一对特征点</translation>
    </message>
    <message>
        <source>删除选中特征点</source>
        <translation>删除选中特征点</translation>
    </message>
    <message>
        <source>添加全景链接</source>
        <translation>添加全景链接</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Add Panorama Link</source>
        <translation>添加全景链接</translation>
    </message>
    <message>
        <source>The number of feature points cannot be less than 3!</source>
        <translation>特征点不能少于3对！</translation>
    </message>
</context>
<context>
    <name>OpenTour</name>
    <message>
        <source>its description has no %1</source>
        <translation>漫游描述中缺少 %1</translation>
    </message>
    <message>
        <source>its description cannot be read: %1</source>
        <translation>无法读取漫游描述：%1</translation>
    </message>
    <message>
        <source>the name of a file inside it is not a bare file name</source>
        <translation>其中某个文件的名称不是单纯的文件名</translation>
    </message>
    <message>
        <source>it declares a document type</source>
        <translation>其中声明了文档类型</translation>
    </message>
    <message>
        <source>an element has too many attributes</source>
        <translation>某个元素的属性过多</translation>
    </message>
    <message>
        <source>it is too long</source>
        <translation>内容过长</translation>
    </message>
    <message>
        <source>it is not UTF-8</source>
        <translation>不是 UTF-8 编码</translation>
    </message>
    <message>
        <source>elements stand too deep in each other</source>
        <translation>元素嵌套过深</translation>
    </message>
    <message>
        <source>line %1, column %2: %3</source>
        <translation>第 %1 行，第 %2 列：%3</translation>
    </message>
    <message>
        <source>it is not a tour file</source>
        <translation>不是漫游文件</translation>
    </message>
    <message>
        <source>it is cut short</source>
        <translation>文件不完整</translation>
    </message>
</context>
<context>
    <name>SaveTour</name>
    <message>
        <source>it is a folder</source>
        <translation>它是一个文件夹</translation>
    </message>
    <message>
        <source>its unfinished remains cannot be removed</source>
        <translation>未完成的残余文件无法删除</translation>
    </message>
    <message>
        <source>%1 cannot be read to its end</source>
        <translation>%1 无法完整读取</translation>
    </message>
</context>
<context>
    <name>Tourwright</name>
    <message>
        <source> is empty!</source>
        <translation> 为空！</translation>
    </message>
    <message>
        <source>Cannot be read back once saved: %1 &quot;%2&quot;</source>
        <translation>保存后将无法原样读回：%1“%2”</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>是</translation>
    </message>
    <message>
        <source>No</source>
        <translation>否</translation>
    </message>
    <message>
        <source>Create Panorama Roaming</source>
        <translation>新建全景漫游</translation>
    </message>
    <message>
        <source>Whether to save the current roaming file?</source>
        <translation>是否保存当前漫游文件？</translation>
    </message>
    <message>
        <source>Open Panorama Roaming</source>
        <translation>打开全景漫游</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>退出</translation>
    </message>
    <message>
        <source>Save As</source>
        <translation>另存为</translation>
    </message>
    <message>
        <source>The file already exists. Is it overwritten?</source>
        <translation>文件已存在，是否覆盖？</translation>
    </message>
    <message>
        <source>Add Panorama File</source>
        <translation>添加全景文件</translation>
    </message>
    <message>
        <source>All panoramas must either all contain radar data or none of them. Panoramas without radar data are automatically deleted!</source>
        <translation>所有全景必须全部包含雷达数据或全部不包含雷达数据。不包含雷达数据的全景已自动删除！</translation>
    </message>
    <message>
        <source>All panoramas must either all contain radar data or none of them. Panoramas with radar data are automatically deleted!</source>
        <translation>所有全景必须全部包含雷达数据或全部不包含雷达数据。包含雷达数据的全景已自动删除！</translation>
    </message>
    <message>
        <source>Add Panorama Link</source>
        <translation>添加全景链接</translation>
    </message>
    <message>
        <source>The selected panoramas cannot be the same!</source>
        <translation>选择的全景点不能相同！</translation>
    </message>
    <message>
        <source>Have a panoramic link with the same name!</source>
        <translation>已存在同名的全景链接！</translation>
    </message>
    <message>
        <source>Preview Panorama Roaming</source>
        <translation>预览全景漫游</translation>
    </message>
    <message>
        <source>Please add panoramas first!</source>
        <translation>请先添加全景点！</translation>
    </message>
    <message>
        <source>Create Map</source>
        <translation>创建导航图</translation>
    </message>
    <message>
        <source>Some panoramas are not connected, do you want to continue anyway?</source>
        <translation>部分全景点没有连接，是否仍要继续？</translation>
    </message>
    <message>
        <source>Delete Points in Point Cloud</source>
        <translation>删除点云中的点</translation>
    </message>
    <message>
        <source>The selected points in the point cloud will be deleted. Do you want to continue?</source>
        <translation>将删除点云中选中的点。是否继续？</translation>
    </message>
    <message>
        <source>Panorama Linking</source>
        <translation>全景链接</translation>
    </message>
    <message>
        <source>Panoramas cannot be linked.</source>
        <translation>无法链接全景。</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>启动</translation>
    </message>
    <message>
        <source>The folder %1 is in use by another running instance of this program.</source>
        <translation>文件夹 %1 正被本程序的另一个实例使用。</translation>
    </message>
    <message>
        <source>File </source>
        <translation>文件 </translation>
    </message>
    <message>
        <source>Save File</source>
        <translation>保存文件</translation>
    </message>
    <message>
        <source> save failed!</source>
        <translation> 保存失败！</translation>
    </message>
    <message>
        <source>Open File</source>
        <translation>打开文件</translation>
    </message>
    <message>
        <source> open failed!</source>
        <translation> 打开失败！</translation>
    </message>
    <message>
        <source>Select the pno file (multiple selection is supported)</source>
        <translation>选择 pno 文件（支持多选）</translation>
    </message>
    <message>
        <source>Select jpg File</source>
        <translation>选择 jpg 文件</translation>
    </message>
    <message>
        <source>jpg File(*.jpg)</source>
        <translation>jpg 文件(*.jpg)</translation>
    </message>
    <message>
        <source>pno File(*.pno)</source>
        <translation>pno 文件(*.pno)</translation>
    </message>
    <message>
        <source>roa File(*.roa)</source>
        <translation>roa 文件(*.roa)</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>自动</translation>
    </message>
    <message>
        <source>Panorama 1</source>
        <translation>全景点 1</translation>
    </message>
    <message>
        <source>Panorama 2</source>
        <translation>全景点 2</translation>
    </message>
    <message>
        <source>Image Size</source>
        <translation>图片尺寸</translation>
    </message>
    <message>
        <source>Hotspot Title</source>
        <translation>热点标题</translation>
    </message>
    <message>
        <source>Content Length</source>
        <translation>内容长度</translation>
    </message>
    <message>
        <source>Unnamed tour</source>
        <translation>未命名漫游</translation>
    </message>
    <message>
        <source>Panoramas: %1</source>
        <translation>全景点：%1</translation>
    </message>
    <message>
        <source>Completing the links</source>
        <translation>正在完善全景链接</translation>
    </message>
    <message>
        <source>Merging the point clouds, which may take minutes</source>
        <translation>正在拼合点云，可能需要几分钟</translation>
    </message>
    <message>
        <source>Writing the map files into %1</source>
        <translation>正在将导航图文件写入 %1</translation>
    </message>
    <message>
        <source>Links: %1</source>
        <translation>链接：%1</translation>
    </message>
    <message>
        <source>Upload Panorama Roaming</source>
        <translation>上传全景漫游</translation>
    </message>
    <message>
        <source>Upload File</source>
        <translation>上传文件</translation>
    </message>
    <message>
        <source>Invalid Email!</source>
        <translation>邮箱格式无效！</translation>
    </message>
    <message>
        <source>Invalid Password!</source>
        <translation>密码格式无效！</translation>
    </message>
    <message>
        <source>Invalid Album Name!</source>
        <translation>相册名无效！</translation>
    </message>
    <message>
        <source>Error accessing %1: </source>
        <translation>访问 %1 时出错：</translation>
    </message>
    <message>
        <source>Error accessing %1</source>
        <translation>访问 %1 时出错</translation>
    </message>
    <message>
        <source>Incorrect password! You can retry </source>
        <translation>密码错误！您今天还可以重试 </translation>
    </message>
    <message>
        <source> times today</source>
        <translation> 次</translation>
    </message>
    <message>
        <source>Incorrect email</source>
        <translation>邮箱不正确</translation>
    </message>
    <message>
        <source>Insufficient cloud storage</source>
        <translation>云空间不足</translation>
    </message>
    <message>
        <source>Error when create album</source>
        <translation>创建相册时出错</translation>
    </message>
    <message>
        <source>Error model file name: </source>
        <translation>模型文件名错误：</translation>
    </message>
    <message>
        <source>Error photo file name: </source>
        <translation>图片文件名错误：</translation>
    </message>
    <message>
        <source>Uploading completed!</source>
        <translation>上传完成！</translation>
    </message>
</context>
<context>
    <name>TourwrightClass</name>
    <message>
        <source>Orvanta 漫游创作工具</source>
        <translation>Orvanta 漫游创作工具</translation>
    </message>
    <message>
        <source>添加全景点</source>
        <translation>添加全景点</translation>
    </message>
    <message>
        <source>删除全景点</source>
        <translation>删除全景点</translation>
    </message>
    <message>
        <source>设置全景链接</source>
        <translation>设置全景链接</translation>
    </message>
    <message>
        <source>设置起始全景点</source>
        <translation>设置起始全景点</translation>
    </message>
    <message>
        <source>选择起始全景点</source>
        <translation>选择起始全景点</translation>
    </message>
    <message>
        <source>删除全景链接</source>
        <translation>删除全景链接</translation>
    </message>
    <message>
        <source>自动生成全景链接</source>
        <translation>自动生成全景链接</translation>
    </message>
    <message>
        <source>手动添加全景链接</source>
        <translation>手动添加全景链接</translation>
    </message>
    <message>
        <source>选择一个全景点</source>
        <translation>选择一个全景点</translation>
    </message>
    <message>
        <source>选择另一个全景点</source>
        <translation>选择另一个全景点</translation>
    </message>
    <message>
        <source>自动完善全景链接并生成导航图</source>
        <translation>自动完善全景链接并生成导航图</translation>
    </message>
    <message>
        <source>导航图输出设置</source>
        <translation>导航图输出设置</translation>
    </message>
    <message>
        <source>导航图模式</source>
        <translation>导航图模式</translation>
    </message>
    <message>
        <source>使用黑白2D平面图作为导航图</source>
        <translation>使用黑白2D平面图作为导航图</translation>
    </message>
    <message>
        <source>2D平面图</source>
        <translation>2D平面图</translation>
    </message>
    <message>
        <source>使用彩色3D点云作为导航图</source>
        <translation>使用彩色3D点云作为导航图</translation>
    </message>
    <message>
        <source>3D点云</source>
        <translation>3D点云</translation>
    </message>
    <message>
        <source>拍摄场景</source>
        <translation>拍摄场景</translation>
    </message>
    <message>
        <source>自动去除天花板且进行点云插值</source>
        <translation>自动去除天花板且进行点云插值</translation>
    </message>
    <message>
        <source>室内</source>
        <translation>室内</translation>
    </message>
    <message>
        <source>不去除天花板且不进行点云插值</source>
        <translation>不去除天花板且不进行点云插值</translation>
    </message>
    <message>
        <source>室外</source>
        <translation>室外</translation>
    </message>
    <message>
        <source>点云密度</source>
        <translation>点云密度</translation>
    </message>
    <message>
        <source>适合1千平方米以下的场景</source>
        <translation>适合1千平方米以下的场景</translation>
    </message>
    <message>
        <source>高</source>
        <translation>高</translation>
    </message>
    <message>
        <source>适合1千到1万平方米的场景</source>
        <translation>适合1千到1万平方米的场景</translation>
    </message>
    <message>
        <source>中</source>
        <translation>中</translation>
    </message>
    <message>
        <source>适合1万平方米以上的场景</source>
        <translation>适合1万平方米以上的场景</translation>
    </message>
    <message>
        <source>低</source>
        <translation>低</translation>
    </message>
    <message>
        <source>输出拼合后的PTS点云</source>
        <translation>输出拼合后的PTS点云</translation>
    </message>
    <message>
        <source>原始点云可能占用1GB以上存储空间且需要更长时间</source>
        <translation>原始点云可能占用1GB以上存储空间且需要更长时间</translation>
    </message>
    <message>
        <source>输出拼合后的二进制点云</source>
        <translation>输出拼合后的二进制点云</translation>
    </message>
    <message>
        <source>设置热点</source>
        <translation>设置热点</translation>
    </message>
    <message>
        <source>图片</source>
        <translation>图片</translation>
    </message>
    <message>
        <source>设置图片热点</source>
        <translation>设置图片热点</translation>
    </message>
    <message>
        <source>添加图片热点</source>
        <translation>添加图片热点</translation>
    </message>
    <message>
        <source>删除图片热点</source>
        <translation>删除图片热点</translation>
    </message>
    <message>
        <source>标题</source>
        <translation>标题</translation>
    </message>
    <message>
        <source>选择图片</source>
        <translation>选择图片</translation>
    </message>
    <message>
        <source>文字</source>
        <translation>文字</translation>
    </message>
    <message>
        <source>设置文字热点</source>
        <translation>设置文字热点</translation>
    </message>
    <message>
        <source>添加文字热点</source>
        <translation>添加文字热点</translation>
    </message>
    <message>
        <source>删除文字热点</source>
        <translation>删除文字热点</translation>
    </message>
    <message>
        <source>内容</source>
        <translation>内容</translation>
    </message>
    <message>
        <source>文件</source>
        <translation>文件</translation>
    </message>
    <message>
        <source>预览</source>
        <translation>预览</translation>
    </message>
    <message>
        <source>上传</source>
        <translation>上传</translation>
    </message>
    <message>
        <source>新建</source>
        <translation>新建</translation>
    </message>
    <message>
        <source>打开</source>
        <translation>打开</translation>
    </message>
    <message>
        <source>保存</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>另存为</source>
        <translation>另存为</translation>
    </message>
    <message>
        <source>退出</source>
        <translation>退出</translation>
    </message>
</context>
<context>
    <name>UnreadableField</name>
    <message>
        <source>panorama identity</source>
        <translation>全景图标识</translation>
    </message>
    <message>
        <source>panorama name</source>
        <translation>全景图名称</translation>
    </message>
    <message>
        <source>file name of the panorama</source>
        <translation>全景图文件名</translation>
    </message>
    <message>
        <source>caption of the text</source>
        <translation>文本标题</translation>
    </message>
    <message>
        <source>content of the text</source>
        <translation>文本内容</translation>
    </message>
    <message>
        <source>caption of the photo</source>
        <translation>照片标题</translation>
    </message>
    <message>
        <source>file name of the photo</source>
        <translation>照片文件名</translation>
    </message>
</context>
<context>
    <name>UploadManager</name>
    <message>
        <source>Orvanta 漫游创作工具</source>
        <translation>Orvanta 漫游创作工具</translation>
    </message>
    <message>
        <source>云空间账号(Email):</source>
        <translation>云空间账号(Email):</translation>
    </message>
    <message>
        <source>密码:</source>
        <translation>密码:</translation>
    </message>
    <message>
        <source>相册名:</source>
        <translation>相册名:</translation>
    </message>
    <message>
        <source>上传</source>
        <translation>上传</translation>
    </message>
    <message>
        <source>取消</source>
        <translation>取消</translation>
    </message>
</context>
</TS>
