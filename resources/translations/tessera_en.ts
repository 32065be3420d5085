<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="zh_CN">
<context>
    <name>Tessera</name>
    <message><source>调试信息</source><translation>Debug information</translation></message>
    <message><source>清空</source><translation>Clear</translation></message>
    <message><source>关闭</source><translation>Close</translation></message>
</context>
</TS>
