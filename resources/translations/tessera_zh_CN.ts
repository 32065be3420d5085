<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- Chinese texts of the keys that are not Chinese themselves. -->
<TS version="2.1" language="zh_CN" sourcelanguage="zh_CN">
<context>
    <name>Tessera</name>
    <message><source>CompositeLine</source><translation>合并曲线</translation></message>
    <message><source>DeCompositeLine</source><translation>拆分曲线</translation></message>
    <message><source>ImportTTFFont</source><translation>导入字体</translation></message>
    <message><source>SplashSetting</source><translation>开机画面设置</translation></message>
    <message><source>FlyMarkSetting</source><translation>飞行打标设置</translation></message>
    <message><source>WaitInfo</source><translation>等待信息</translation></message>
    <message><source>StopHasEndSig</source><translation>停止后输出结束信号</translation></message>
    <message><source>GasDelay</source><translation>指示红光</translation></message>
    <message><source>ProcGas</source><translation>保护气体</translation></message>
    <message><source>FlyType</source><translation>飞行类型</translation></message>
    <message><source>FlyTypeLine</source><translation>直线</translation></message>
    <message><source>EncSrc</source><translation>编码器来源</translation></message>
    <message><source>InnerEncoder</source><translation>内部编码器</translation></message>
    <message><source>OuterEncoder</source><translation>外部编码器</translation></message>
    <message><source>EnableInnerEnc</source><translation>使用内部编码器</translation></message>
    <message><source>PulseInterval</source><translation>脉冲间隔</translation></message>
    <message><source>InnerEncDir</source><translation>内部编码器方向</translation></message>
    <message><source>ExPulseDir</source><translation>外部编码器方向</translation></message>
    <message><source>ForwardDir</source><translation>正向</translation></message>
    <message><source>OppositeDir</source><translation>反向</translation></message>
    <message><source>EnableEncRange</source><translation>使用编码器范围</translation></message>
    <message><source>EncRange</source><translation>编码器范围</translation></message>
    <message><source>PulseMM(mm)</source><translation>每毫米脉冲数(mm)</translation></message>
    <message><source>XPulseQyantity</source><translation>X每毫米脉冲数</translation></message>
    <message><source>YPulseQyantity</source><translation>Y每毫米脉冲数</translation></message>
    <message><source>EncPos</source><translation>编码器计数</translation></message>
    <message><source>SetEncPos</source><translation>设置编码器计数</translation></message>
    <message><source>LineMarkParam</source><translation>直线打标</translation></message>
    <message><source>RotateMarkParam</source><translation>旋转打标</translation></message>
    <message><source>Save</source><translation>保存</translation></message>
    <message><source>RedSpeed</source><translation>红光速度</translation></message>
    <message><source>ShowSimple</source><translation>简略显示</translation></message>
    <message><source>EnableSoftReady</source><translation>软件准备信号</translation></message>
    <!-- Fonts -->
    <message><source>--&gt;</source><translation>--&gt;</translation></message>
    <message><source>&lt;--</source><translation>&lt;--</translation></message>
    <message><source>Search</source><translation>搜索</translation></message>
    <message><source>Import</source><translation>导入</translation></message>
    <message><source>Import TTF</source><translation>导入字体</translation></message>
    <message><source>Import OK:</source><translation>导入成功:</translation></message>
    <message><source>please restart</source><translation>请重启软件</translation></message>
</context>
</TS>
