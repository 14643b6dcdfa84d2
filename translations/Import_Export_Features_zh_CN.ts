<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>LumoDeviceTree</name>
    <message>
        <source>Device tree</source>
        <translation>设备树</translation>
    </message>
    <message>
        <source>All Cameras</source>
        <translation>所有相机</translation>
    </message>
    <message>
        <source>No camera found</source>
        <translation>未找到相机</translation>
    </message>
    <message>
        <source>Searching for cameras...</source>
        <translation>正在搜索相机...</translation>
    </message>
    <message>
        <source>Free</source>
        <translation>空闲</translation>
    </message>
    <message>
        <source>In use by another program</source>
        <translation>正被其他程序使用</translation>
    </message>
    <message>
        <source>Unreachable</source>
        <translation>不可达</translation>
    </message>
</context>
<context>
    <name>MainWidget</name>
    <message>
        <source>Import/Export Features</source>
        <translation>导入/导出属性</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>导入</translation>
    </message>
    <message>
        <source>Export</source>
        <translation>导出</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>返回</translation>
    </message>
    <message>
        <source>Failed</source>
        <translation>失败</translation>
    </message>
    <message>
        <source> Importing</source>
        <translation> 正在导入</translation>
    </message>
    <message>
        <source> Imported.</source>
        <translation> 已导入</translation>
    </message>
    <message>
        <source> Exporting</source>
        <translation> 正在导出</translation>
    </message>
    <message>
        <source> Exported.</source>
        <translation> 已导出</translation>
    </message>
    <message>
        <source>Select Import File</source>
        <translation>选择导入文件</translation>
    </message>
    <message>
        <source>Import File(*.kfb)</source>
        <translation>导入文件(*.kfb)</translation>
    </message>
    <message>
        <source>Export Features</source>
        <translation>导出属性</translation>
    </message>
    <message>
        <source>Importing features...</source>
        <translation>正在导入属性...</translation>
    </message>
    <message>
        <source>Exporting features...</source>
        <translation>正在导出属性...</translation>
    </message>
    <message>
        <source>Prompt</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>Start exporting...</source>
        <translation>开始导出...</translation>
    </message>
    <message>
        <source>Start importing...</source>
        <translation>开始导入...</translation>
    </message>
    <message>
        <source>Failed to export features. The system allows no more threads.</source>
        <translation>导出属性失败。系统不允许更多线程。</translation>
    </message>
    <message>
        <source>Failed to import features. The system allows no more threads.</source>
        <translation>导入属性失败。系统不允许更多线程。</translation>
    </message>
    <message>
        <source>The Reasons of Failure :</source>
        <translation>失败原因：</translation>
    </message>
    <message>
        <source>Exported.</source>
        <translation>已导出。</translation>
    </message>
    <message>
        <source>Imported.</source>
        <translation>已导入。</translation>
    </message>
    <message>
        <source>Exporting process is over.</source>
        <translation>导出已结束。</translation>
    </message>
    <message>
        <source>Importing process is over.</source>
        <translation>导入已结束。</translation>
    </message>
    <message>
        <source>Operation failed. You can operate %1 devices at most.</source>
        <translation>操作失败。最多可同时操作 %1 台设备。</translation>
    </message>
    <message>
        <source>PortID</source>
        <translation>端口号</translation>
    </message>
    <message>
        <source>Model Name</source>
        <translation>型号</translation>
    </message>
    <message>
        <source>Device User ID</source>
        <translation>用户自定义名称</translation>
    </message>
    <message>
        <source>Serial Number</source>
        <translation>序列号</translation>
    </message>
    <message>
        <source>Interface Type</source>
        <translation>接口类型</translation>
    </message>
    <message>
        <source>MAC Address</source>
        <translation>MAC 地址</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>状态</translation>
    </message>
    <message>
        <source>Operation Status</source>
        <translation>操作状态</translation>
    </message>
    <message>
        <source>Free</source>
        <translation>空闲</translation>
    </message>
    <message>
        <source>In Use</source>
        <translation>使用中</translation>
    </message>
    <message>
        <source>Unreachable</source>
        <translation>不可达</translation>
    </message>
</context>
<context>
    <name>QOperateThread</name>
    <message>
        <source>Failed to load feature.%1</source>
        <translation>加载属性失败。%1</translation>
    </message>
    <message>
        <source>Failed to save feature.%1</source>
        <translation>保存属性失败。%1</translation>
    </message>
    <message>
        <source>Failed to export features.Failed to open device.</source>
        <translation>导出属性失败。无法打开设备。</translation>
    </message>
    <message>
        <source>Failed to export features.Failed to open File.</source>
        <translation>导出属性失败。无法打开文件。</translation>
    </message>
    <message>
        <source>Failed to import features.Failed to open device.</source>
        <translation>导入属性失败。无法打开设备。</translation>
    </message>
    <message>
        <source>Failed to import features.Failed to open xml.</source>
        <translation>导入属性失败。无法打开 xml 文件。</translation>
    </message>
    <message>
        <source>Failed to import features.Failed to load xml.</source>
        <translation>导入属性失败。无法加载 xml 文件。</translation>
    </message>
    <message>
        <source>Failed to import features. Camera models mismatch.</source>
        <translation>导入属性失败。相机型号不匹配。</translation>
    </message>
</context>
</TS>
