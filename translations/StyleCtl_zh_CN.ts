<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>TarnCustom</name>
    <message>
        <source>Look in:</source>
        <translation>查找范围：</translation>
    </message>
    <message>
        <source>Folder:</source>
        <translation>文件夹：</translation>
    </message>
    <message>
        <source>Files of type:</source>
        <translation>文件类型：</translation>
    </message>
    <message>
        <source>Choose</source>
        <translation>选择</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
</context>
<context>
    <name>TarnCustomCheckHeaderView</name>
    <message>
        <source>Left and Right choose a column, Space sorts by it or ticks the check box that selects all rows.</source>
        <translation>左右方向键选择列，空格键按该列排序，或勾选用于全选的复选框。</translation>
    </message>
    <message>
        <source>Select all, not ticked</source>
        <translation>全选，未勾选</translation>
    </message>
    <message>
        <source>Select all, ticked</source>
        <translation>全选，已勾选</translation>
    </message>
</context>
<context>
    <name>TarnCustomMessageBox</name>
    <message>
        <source>Prompt</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
</context>
<context>
    <name>TarnCustomSaveDoneHintDlg</name>
    <message>
        <source>Prompt</source>
        <translation>提示</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>文件夹</translation>
    </message>
    <message>
        <source>The folder cannot be opened.</source>
        <translation>无法打开该文件夹。</translation>
    </message>
    <message>
        <source>Open Folder</source>
        <translation>打开文件夹</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
</context>
<context>
    <name>TarnCustomSortHeaderView</name>
    <message>
        <source>Column headers</source>
        <translation>列标题</translation>
    </message>
    <message>
        <source>Left and Right choose a column, Space sorts by it.</source>
        <translation>左右方向键选择列，空格键按该列排序。</translation>
    </message>
</context>
<context>
    <name>TarnCustomTableWidget</name>
    <message>
        <source>Up and Down choose a row, Space ticks it, Ctrl+A ticks all rows, Ctrl+Shift+A none.</source>
        <translation>上下方向键选择行，空格键勾选该行，Ctrl+A 勾选所有行，Ctrl+Shift+A 取消所有勾选。</translation>
    </message>
</context>
<context>
    <name>TarnCustomTitleBar</name>
    <message>
        <source>Minimize</source>
        <translation>最小化</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>还原</translation>
    </message>
    <message>
        <source>Maximize</source>
        <translation>最大化</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
</context>
</TS>
