<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>LumoInterface</name>
    <message>
        <source>The camera handle is not valid.</source>
        <translation>相机句柄无效。</translation>
    </message>
    <message>
        <source>A parameter is not valid.</source>
        <translation>参数无效。</translation>
    </message>
    <message>
        <source>The camera is not open.</source>
        <translation>相机未打开。</translation>
    </message>
    <message>
        <source>The camera is open already.</source>
        <translation>相机已打开。</translation>
    </message>
    <message>
        <source>This kind of camera or access is not supported.</source>
        <translation>不支持此类相机或访问方式。</translation>
    </message>
    <message>
        <source>The buffer is too small.</source>
        <translation>缓冲区太小。</translation>
    </message>
    <message>
        <source>This computer is out of memory, files or processes.</source>
        <translation>本机的内存、文件或进程资源不足。</translation>
    </message>
    <message>
        <source>The camera session program could not be started.</source>
        <translation>无法启动相机会话程序。</translation>
    </message>
    <message>
        <source>The camera does not answer.</source>
        <translation>相机没有应答。</translation>
    </message>
    <message>
        <source>Another application controls the camera.</source>
        <translation>相机正被其他程序控制。</translation>
    </message>
    <message>
        <source>The camera did not answer in time.</source>
        <translation>相机应答超时。</translation>
    </message>
    <message>
        <source>The connection to the camera is lost.</source>
        <translation>与相机的连接已断开。</translation>
    </message>
    <message>
        <source>The camera session program ended unexpectedly.</source>
        <translation>相机会话程序意外终止。</translation>
    </message>
    <message>
        <source>The camera answered with an error.</source>
        <translation>相机返回错误。</translation>
    </message>
    <message>
        <source>The camera&apos;s description is missing or faulty.</source>
        <translation>相机的描述文件缺失或有错误。</translation>
    </message>
    <message>
        <source>The camera has no such feature.</source>
        <translation>相机没有此属性。</translation>
    </message>
    <message>
        <source>The feature is of another type.</source>
        <translation>属性的类型不符。</translation>
    </message>
    <message>
        <source>The feature cannot be accessed now.</source>
        <translation>当前无法访问此属性。</translation>
    </message>
    <message>
        <source>The value is out of range.</source>
        <translation>数值超出范围。</translation>
    </message>
    <message>
        <source>The camera describes the feature wrongly.</source>
        <translation>相机对此属性的描述有误。</translation>
    </message>
    <message>
        <source>The file cannot be opened.</source>
        <translation>无法打开文件。</translation>
    </message>
    <message>
        <source>The file is not a feature file.</source>
        <translation>该文件不是属性文件。</translation>
    </message>
    <message>
        <source>The file cannot be written.</source>
        <translation>无法写入文件。</translation>
    </message>
    <message>
        <source>The camera refused some of the values.</source>
        <translation>相机拒绝了部分数值。</translation>
    </message>
    <message>
        <source>(Error %1)</source>
        <translation>（错误 %1）</translation>
    </message>
    <message>
        <source>An unknown error occurred.</source>
        <translation>发生未知错误。</translation>
    </message>
</context>
</TS>
