<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<!-- The English texts of the operator. One context; a line a text; grouped as the comments say. -->
<TS version="2.1" language="en" sourcelanguage="zh_CN">
<context>
    <name>Tessera</name>
    <!-- Main window: state and status bar -->
    <message><source>说明书</source><translation>Manual</translation></message>
    <message><source>卡/振镜状态</source><translation>Card/scanner state</translation></message>
    <message><source>激光器正常</source><translation>Laser OK</translation></message>
    <message><source>安全报警</source><translation>Safety alarm</translation></message>
    <message><source>软件版本号</source><translation>Software version</translation></message>
    <message><source>卡版本号</source><translation>Card version</translation></message>
    <message><source>卡打开成功</source><translation> card open</translation></message>
    <message><source>卡打开失败</source><translation> card not open</translation></message>
    <message><source>文档</source><translation>Documents</translation></message>
    <message><source>选择对象个数</source><translation>Selected objects</translation></message>
    <message><source>定制</source><translation>Custom</translation></message>
    <!-- Main window: menus and tool bars -->
    <message><source>文件</source><translation>File</translation></message>
    <message><source>工具</source><translation>Tools</translation></message>
    <message><source>设置</source><translation>Settings</translation></message>
    <message><source>UI切换</source><translation>Switch UI</translation></message>
    <message><source>新建</source><translation>New</translation></message>
    <message><source>打开</source><translation>Open</translation></message>
    <message><source>保存</source><translation>Save</translation></message>
    <message><source>另存为</source><translation>Save as</translation></message>
    <message><source>文件管理</source><translation>File manager</translation></message>
    <message><source>软件更新</source><translation>Software update</translation></message>
    <message><source>软件备份</source><translation>Software backup</translation></message>
    <message><source>固件更新</source><translation>Firmware update</translation></message>
    <message><source>设置分辨率</source><translation>Set resolution</translation></message>
    <message><source>更新时间</source><translation>Update time</translation></message>
    <message><source>设置时间</source><translation>Set time</translation></message>
    <message><source>重启设备</source><translation>Restart device</translation></message>
    <message><source>关机</source><translation>Shut down</translation></message>
    <message><source>打开终端</source><translation>Open terminal</translation></message>
    <message><source>设置背景图</source><translation>Set background image</translation></message>
    <message><source>显示调试信息</source><translation>Show debug information</translation></message>
    <message><source>显示说明书</source><translation>Show manual</translation></message>
    <message><source>系统设置</source><translation>System settings</translation></message>
    <message><source>运控设置</source><translation>Motion settings</translation></message>
    <message><source>用户管理</source><translation>User management</translation></message>
    <message><source>Box校正</source><translation>Box calibration</translation></message>
    <message><source>IO设置</source><translation>I/O settings</translation></message>
    <message><source>CCD拍照位设置</source><translation>CCD photo positions</translation></message>
    <message><source>激光器主机设置</source><translation>Laser source settings</translation></message>
    <message><source>激光器监控</source><translation>Laser monitoring</translation></message>
    <message><source>高速分光设置</source><translation>High-speed beam splitting</translation></message>
    <message><source>振镜卡初始复位</source><translation>Factory reset of scanner card</translation></message>
    <message><source>语言选择</source><translation>Language</translation></message>
    <message><source>分辨率设置</source><translation>Resolution settings</translation></message>
    <message><source>切换用户</source><translation>Change user</translation></message>
    <message><source>修改密码</source><translation>Change password</translation></message>
    <message><source>新建用户</source><translation>New user</translation></message>
    <message><source>查看权限</source><translation>View rights</translation></message>
    <message><source>镭锳激光器设置</source><translation>Leiying laser settings</translation></message>
    <message><source>创鑫激光器</source><translation>Chuangxin laser</translation></message>
    <message><source>切换调试模式</source><translation>Switch debug mode</translation></message>
    <message><source>保存所有</source><translation>Save all</translation></message>
    <message><source>撤销</source><translation>Undo</translation></message>
    <message><source>恢复</source><translation>Redo</translation></message>
    <message><source>排序</source><translation>Sort</translation></message>
    <message><source>放大选中对象</source><translation>Zoom to selection</translation></message>
    <message><source>框选放大</source><translation>Zoom to frame</translation></message>
    <message><source>放大</source><translation>Zoom in</translation></message>
    <message><source>缩小</source><translation>Zoom out</translation></message>
    <message><source>显示全部</source><translation>Show all</translation></message>
    <message><source>导入矢量图</source><translation>Import drawing</translation></message>
    <message><source>运行</source><translation>Run</translation></message>
    <message><source>多文档运行</source><translation>Multi-document run</translation></message>
    <message><source>选择对象</source><translation>Select</translation></message>
    <message><source>绘制点</source><translation>Draw point</translation></message>
    <message><source>绘制线</source><translation>Draw line</translation></message>
    <message><source>绘制直线</source><translation>Draw line</translation></message>
    <message><source>矩形</source><translation>Rectangle</translation></message>
    <message><source>圆形</source><translation>Circle</translation></message>
    <message><source>导入图形</source><translation>Import drawing</translation></message>
    <message><source>导入图纸</source><translation>Import drawing</translation></message>
    <message><source>绘制文字</source><translation>Draw text</translation></message>
    <message><source>示教</source><translation>Teach</translation></message>
    <message><source>示教圆</source><translation>Teach circle</translation></message>
    <message><source>示教圆弧</source><translation>Teach arc</translation></message>
    <message><source>对象阵列</source><translation>Array of objects</translation></message>
    <message><source>曲线异化</source><translation>Roughen curves</translation></message>
    <message><source>上下镜像</source><translation>Mirror top/bottom</translation></message>
    <message><source>左右镜像</source><translation>Mirror left/right</translation></message>
    <message><source>对象组合</source><translation>Group</translation></message>
    <message><source>打散组合</source><translation>Ungroup</translation></message>
    <message><source>CompositeLine</source><translation>Join curves</translation></message>
    <message><source>DeCompositeLine</source><translation>Split curves</translation></message>
    <message><source>左对齐</source><translation>Align left</translation></message>
    <message><source>上下排列</source><translation>Align centres horizontally</translation></message>
    <message><source>右对齐</source><translation>Align right</translation></message>
    <message><source>上对齐</source><translation>Align top</translation></message>
    <message><source>左右排列</source><translation>Align centres vertically</translation></message>
    <message><source>下对齐</source><translation>Align bottom</translation></message>
    <message><source>使宽度相同</source><translation>Same width</translation></message>
    <message><source>使高度相同</source><translation>Same height</translation></message>
    <message><source>使大小相同</source><translation>Same size</translation></message>
    <message><source>ImportTTFFont</source><translation>Import fonts</translation></message>
    <message><source>SplashSetting</source><translation>Splash screen</translation></message>
    <message><source>FlyMarkSetting</source><translation>Marking on the fly</translation></message>
    <!-- Main window: questions -->
    <message><source>警告</source><translation>Warning</translation></message>
    <message><source>注意:卡Flash复位一般为出厂操作,除非必要请不要执行,复位需要几分钟时间,请保证复位过程中不要断电</source><translation>Caution: resetting the card's flash is a factory operation. Do not do it unless it is necessary. The reset takes a few minutes; make sure that the power is not cut meanwhile.</translation></message>
    <message><source>是否重启设备</source><translation>Restart the device?</translation></message>
    <message><source>关闭设备</source><translation>Shut down</translation></message>
    <message><source>是否关闭设备</source><translation>Shut down the device?</translation></message>
    <message><source>保存成功</source><translation>Saved</translation></message>
    <message><source>提示</source><translation>Notice</translation></message>
    <message><source>错误</source><translation>Error</translation></message>
    <message><source>确定</source><translation>OK</translation></message>
    <message><source>取消</source><translation>Cancel</translation></message>
    <message><source>确认</source><translation>Confirm</translation></message>
    <message><source>是</source><translation>Yes</translation></message>
    <message><source>否</source><translation>No</translation></message>
    <!-- Start of the laser -->
    <message><source>激光器启动中</source><translation>The laser is being switched on</translation></message>
    <message><source>远程启动脉冲</source><translation>Remote start pulse</translation></message>
    <message><source>输出线路稳定</source><translation>Output lines settling</translation></message>
    <message><source>激光器类型切换</source><translation>Laser type switching</translation></message>
    <message><source>光闸使能生效</source><translation>Shutter enable taking effect</translation></message>
    <message><source>远程启动生效</source><translation>Remote start taking effect</translation></message>
    <message><source>光闸关闭</source><translation>Shutter closing</translation></message>
    <message><source>YLS激光Ready信号</source><translation>Ready signal of the YLS laser</translation></message>
    <message><source>施恩激光器RDY_23信号</source><translation>RDY_23 signal of the SN laser</translation></message>
    <message><source>施恩激光器EMISS_22信号</source><translation>EMISS_22 signal of the SN laser</translation></message>
    <message><source>输入口</source><translation>input</translation></message>
    <message><source>自%1起,已等待%2秒,最长%3秒</source><translation>Since %1, waited %2 s of at most %3 s</translation></message>
    <!-- Input functions and alarms -->
    <message><source>暂停</source><translation>Pause</translation></message>
    <message><source>终止</source><translation>Stop</translation></message>
    <message><source>红光预览</source><translation>Red preview</translation></message>
    <message><source>手动</source><translation>Manual</translation></message>
    <message><source>自动</source><translation>Automatic</translation></message>
    <message><source>机台就绪</source><translation>Machine ready</translation></message>
    <message><source>机台安全门1</source><translation>Safety door 1</translation></message>
    <message><source>机台安全门2</source><translation>Safety door 2</translation></message>
    <message><source>机台安全门3</source><translation>Safety door 3</translation></message>
    <message><source>机台安全门4</source><translation>Safety door 4</translation></message>
    <message><source>机台安全门5</source><translation>Safety door 5</translation></message>
    <message><source>安全光栅</source><translation>Light curtain</translation></message>
    <message><source>急停按钮</source><translation>Emergency stop button</translation></message>
    <message><source>激光器报警</source><translation>Laser alarm</translation></message>
    <message><source>水冷机报警</source><translation>Chiller alarm</translation></message>
    <message><source>安全门</source><translation>Safety door </translation></message>
    <message><source>报警</source><translation> alarm</translation></message>
    <message><source>安全光幕触发</source><translation>Light curtain interrupted</translation></message>
    <message><source>急停</source><translation>Emergency stop</translation></message>
    <message><source>未知错误</source><translation>Unknown error</translation></message>
    <message><source>打开卡失败</source><translation>The card could not be opened</translation></message>
    <message><source>没有高精度校正文件,不校正</source><translation>No high-precision correction file: nothing is corrected</translation></message>
    <message><source>高精度校正文件已损坏,不校正</source><translation>The high-precision correction file is damaged: nothing is corrected</translation></message>
    <!-- Status window -->
    <message><source>卡&amp;振镜状态</source><translation>Card &amp; scanner state</translation></message>
    <message><source>运行中</source><translation>Running</translation></message>
    <message><source>暂停中</source><translation>Paused</translation></message>
    <message><source>超时</source><translation> time-out</translation></message>
    <message><source>等待输入</source><translation>Waiting for input</translation></message>
    <message><source>等待扩展运动模块</source><translation>Waiting for motion module</translation></message>
    <message><source>等待编码器</source><translation>Waiting for encoder</translation></message>
    <message><source>等待振镜闭环到达</source><translation>Waiting for closed-loop scanner</translation></message>
    <message><source>数据断流</source><translation>Data underrun</translation></message>
    <message><source>运动被停止</source><translation>Motion stopped</translation></message>
    <message><source>运行成功</source><translation>Run succeeded</translation></message>
    <message><source>开环未知</source><translation>Open loop, unknown</translation></message>
    <message><source>闭环异常</source><translation>Closed loop faulty</translation></message>
    <message><source>闭环正常</source><translation>Closed loop OK</translation></message>
    <message><source>通迅校验异常</source><translation>Communication checksum error</translation></message>
    <message><source>位置异常</source><translation> position error</translation></message>
    <message><source>电源异常</source><translation>Power supply error</translation></message>
    <message><source>过流</source><translation>Overcurrent</translation></message>
    <message><source>初始化中</source><translation>Initialising</translation></message>
    <message><source>闭环振镜</source><translation>Closed-loop scanner</translation></message>
    <message><source>开环振镜</source><translation>Open-loop scanner</translation></message>
    <message><source>无反馈</source><translation> no feedback</translation></message>
    <message><source>振镜报警</source><translation> scanner alarm</translation></message>
    <message><source>反馈位置异常</source><translation> feedback position error</translation></message>
    <message><source>运行状态</source><translation>Run state</translation></message>
    <message><source>运行结果</source><translation>Run result</translation></message>
    <message><source>报警时间设置</source><translation>Alarm time</translation></message>
    <message><source>清除报警</source><translation>Clear alarm</translation></message>
    <message><source>WaitInfo</source><translation>Wait information</translation></message>
    <message><source>指示红光</source><translation>Pilot light</translation></message>
    <message><source>保护气体</source><translation>Shielding gas</translation></message>
    <!-- Run dialog -->
    <message><source>工作</source><translation>Mark</translation></message>
    <message><source>边框预览</source><translation>Border preview</translation></message>
    <message><source>选中工作</source><translation>Selected only</translation></message>
    <message><source>循环工作</source><translation>Loop</translation></message>
    <message><source>循环间隔</source><translation>Loop delay</translation></message>
    <message><source>开始</source><translation>Start</translation></message>
    <message><source>退出</source><translation>Exit</translation></message>
    <message><source>执行次数</source><translation>Run count</translation></message>
    <message><source>执行时间</source><translation>Run time</translation></message>
    <message><source>运行框</source><translation>Run</translation></message>
    <message><source>完成或终止运行</source><translation>Finished or stopped</translation></message>
    <message><source>运行开始</source><translation>Running</translation></message>
    <message><source>用户暂停</source><translation>Paused by operator</translation></message>
    <message><source>是否清空运行个数计数?</source><translation>Clear the run counter?</translation></message>
    <message><source>红光循环预览</source><translation>Red-light loop preview</translation></message>
    <message><source>上移</source><translation>Up</translation></message>
    <message><source>下移</source><translation>Down</translation></message>
    <message><source>步长</source><translation>Step</translation></message>
    <message><source>停止轴</source><translation>Stop axis</translation></message>
    <message><source>运行计数保存失败</source><translation>The run counter could not be saved</translation></message>
    <message><source>:红光循环时触发运行开始</source><translation>: run triggered out of the red-light loop, started</translation></message>
    <message><source>:红光循环时触发运行完成</source><translation>: run triggered out of the red-light loop, finished</translation></message>
    <!-- Splice and teaching -->
    <message><source>手动补偿量校正</source><translation>Manual compensation</translation></message>
    <message><source>手动补偿校正</source><translation>Manual compensation</translation></message>
    <message><source>启用手动BOX补偿数据</source><translation>Use manual box compensation</translation></message>
    <message><source>中心偏移量(X,Y)</source><translation>Centre offset (X,Y)</translation></message>
    <message><source>偏移角度</source><translation>Offset angle</translation></message>
    <message><source>开启红光</source><translation>Red light on</translation></message>
    <message><source>关闭红光</source><translation>Red light off</translation></message>
    <message><source>开启激光</source><translation>Laser on</translation></message>
    <message><source>测试矩形大小</source><translation>Test rectangle size</translation></message>
    <message><source>停止</source><translation>Stop</translation></message>
    <message><source>当前位置</source><translation>Current position</translation></message>
    <message><source>生成单点</source><translation>Record point</translation></message>
    <message><source>回中心</source><translation>To centre</translation></message>
    <!-- Multi-document marking -->
    <message><source>是否保存</source><translation>Save?</translation></message>
    <message><source>是否保存当前多文档</source><translation>Save the current multi-document project?</translation></message>
    <message><source>打开失败</source><translation>Could not open</translation></message>
    <message><source>文件不存在</source><translation>The file does not exist</translation></message>
    <message><source>是否删除</source><translation>Delete?</translation></message>
    <message><source>是否删除指定文档</source><translation>Delete this document entry?</translation></message>
    <message><source>有效</source><translation>Active</translation></message>
    <message><source>取反</source><translation>Invert</translation></message>
    <message><source>编辑文档</source><translation>Edit document</translation></message>
    <message><source>添加文档</source><translation>Add document</translation></message>
    <message><source>请选择文件</source><translation>Please choose a file</translation></message>
    <message><source>请设置触发输入</source><translation>Please set the trigger inputs</translation></message>
    <message><source>手动触发</source><translation>Manual trigger</translation></message>
    <message><source>停止运行</source><translation>Stop run</translation></message>
    <message><source>单个时间</source><translation>Time per piece</translation></message>
    <message><source>等待中</source><translation>Waiting</translation></message>
    <message><source>打标中</source><translation>Marking</translation></message>
    <message><source>空闲中</source><translation>Idle</translation></message>
    <message><source>是否将运行次数清零</source><translation>Set the run count to zero?</translation></message>
    <!-- I/O settings -->
    <message><source>只有运行检测安全状态</source><translation>Check safety only while running</translation></message>
    <message><source>启用完成信号</source><translation>Use end signal</translation></message>
    <message><source>输出号</source><translation>Output</translation></message>
    <message><source>有效电平</source><translation>Active level</translation></message>
    <message><source>低电平</source><translation>Low</translation></message>
    <message><source>高电平</source><translation>High</translation></message>
    <message><source>清除方式</source><translation>Cleared by</translation></message>
    <message><source>阻塞一段时间</source><translation>Blocking for a time</translation></message>
    <message><source>下次运行关闭</source><translation>Off at next run</translation></message>
    <message><source>等待应答信号</source><translation>Wait for acknowledge</translation></message>
    <message><source>多线程阻塞</source><translation>Non-blocking time</translation></message>
    <message><source>持续时间</source><translation>Duration</translation></message>
    <message><source>应答输入号</source><translation>Acknowledge input</translation></message>
    <message><source>应答电平</source><translation>Acknowledge level</translation></message>
    <message><source>应答超时时间</source><translation>Acknowledge time-out</translation></message>
    <message><source>启用信号自校验</source><translation>Read signal back</translation></message>
    <message><source>红</source><translation>Red</translation></message>
    <message><source>绿</source><translation>Green</translation></message>
    <message><source>黄</source><translation>Yellow</translation></message>
    <message><source>蜂鸣器</source><translation>Buzzer</translation></message>
    <message><source>输出反向</source><translation>Invert outputs</translation></message>
    <message><source>StopHasEndSig</source><translation>End signal after stop</translation></message>
    <message><source>GasDelay</source><translation>Pilot light</translation></message>
    <message><source>ProcGas</source><translation>Shielding gas</translation></message>
    <message><source>安全门/安全光栅响应方式</source><translation>Safety door/light curtain response</translation></message>
    <message><source>就绪信号启用</source><translation>Use ready signal</translation></message>
    <message><source>运行状态专用</source><translation>Reserved: run state</translation></message>
    <message><source>激光状态专用</source><translation>Reserved: laser state</translation></message>
    <message><source>卡报警专用</source><translation>Reserved: card alarm</translation></message>
    <message><source>激光触发</source><translation>Laser trigger</translation></message>
    <message><source>激光器使能</source><translation>Laser enable</translation></message>
    <message><source>激光器复位</source><translation>Laser reset</translation></message>
    <message><source>激光器远程开关</source><translation>Laser remote switch</translation></message>
    <message><source>红光</source><translation>Red light</translation></message>
    <message><source>激光器模式选择</source><translation>Laser mode select</translation></message>
    <message><source>出光中</source><translation>Emitting</translation></message>
    <message><source>波形1</source><translation>Waveform 1</translation></message>
    <message><source>波形2</source><translation>Waveform 2</translation></message>
    <message><source>波形4</source><translation>Waveform 4</translation></message>
    <message><source>波形8</source><translation>Waveform 8</translation></message>
    <message><source>波形16</source><translation>Waveform 16</translation></message>
    <message><source>波形锁</source><translation>Waveform latch</translation></message>
    <message><source>申请光路</source><translation>Request beam path</translation></message>
    <message><source>首脉冲抑制</source><translation>First pulse suppression</translation></message>
    <message><source>测试输出</source><translation>Test outputs</translation></message>
    <!-- Laser alarm -->
    <message><source>0=自定义类型</source><translation>0=Custom type</translation></message>
    <message><source>4=Fiber IPG脉宽E27418</source><translation>4=Fiber IPG pulse width E27418</translation></message>
    <message><source>5=Fiber 创鑫</source><translation>5=Fiber Chuangxin</translation></message>
    <message><source>激光器报警(与配置IO状态不匹配)</source><translation>Laser alarm (inputs match no configured state)</translation></message>
    <message><source>温度超标</source><translation>Over-temperature</translation></message>
    <message><source>PD报警</source><translation>PD alarm</translation></message>
    <message><source>启用激光器报警</source><translation>Use laser alarm</translation></message>
    <message><source>激光器类型</source><translation>Laser type</translation></message>
    <message><source>报警信号取反</source><translation>Invert alarm signal</translation></message>
    <message><source>报警清除(请先设置正确的IO号)</source><translation>Clear alarm (set the correct I/O number first)</translation></message>
    <message><source>报警信息</source><translation>Alarm information</translation></message>
    <!-- Files -->
    <message><source>新建文档</source><translation>New document</translation></message>
    <message><source>打开文档</source><translation>Open document</translation></message>
    <message><source>文档管理</source><translation>Document manager</translation></message>
    <message><source>请输入文档名字</source><translation>Please enter a document name</translation></message>
    <message><source>是否覆盖</source><translation>Overwrite?</translation></message>
    <message><source>打标文件</source><translation>The mark file</translation></message>
    <message><source>已存在</source><translation>exists already</translation></message>
    <message><source>请选择要打开的文件</source><translation>Please choose the file to open</translation></message>
    <message><source>文件已打开,是否关闭文件并删除</source><translation>The file is open. Close and delete it?</translation></message>
    <message><source>是否删除文件</source><translation>Delete the file?</translation></message>
    <message><source>是否删除多文档文件</source><translation>Delete the multi-document file?</translation></message>
    <message><source>请先插入U盘,再备份</source><translation>Please plug in a USB stick first</translation></message>
    <message><source>选中的备份文件不存在:</source><translation>The chosen backup does not exist:</translation></message>
    <message><source>打标文件已存在: </source><translation>Mark file exists already: </translation></message>
    <message><source>多文档打标文件已存在: </source><translation>Multi-document file exists already: </translation></message>
    <message><source>手动高精度文件导入信息显示</source><translation>Import report of high-precision data</translation></message>
    <message><source>校正数据行数列数为:</source><translation>Rows and columns of the data:</translation></message>
    <message><source>校正数据行列数为:</source><translation>Rows and columns of the data:</translation></message>
    <message><source>未识别的错误数据行数:</source><translation>Lines not recognised:</translation></message>
    <message><source>偏差值越界行数:</source><translation>Lines with deviation out of range:</translation></message>
    <message><source>没有数据的空行数:</source><translation>Lines without data:</translation></message>
    <message><source>是否缺少数据:</source><translation>Data missing:</translation></message>
    <message><source>测量中心偏移量:</source><translation>Offset of measured centre:</translation></message>
    <message><source>自动计算中校正错误排序行数:</source><translation>Lines put into order automatically:</translation></message>
    <message><source>外部手动高精度数据导入结果:</source><translation>Result of the import:</translation></message>
    <message><source>最大偏差数据:</source><translation>Largest deviation:</translation></message>
    <message><source>删除文档</source><translation>Delete document</translation></message>
    <message><source>是否保存当前文档</source><translation>Save the current document?</translation></message>
    <message><source>文件已存在</source><translation>The file exists already</translation></message>
    <message><source>覆盖</source><translation>Overwrite</translation></message>
    <message><source>重命名</source><translation>Rename</translation></message>
    <message><source>应用到所有</source><translation>Apply to all</translation></message>
    <message><source>新文件名</source><translation>New name</translation></message>
    <message><source>文件名已存在</source><translation>The name is taken already</translation></message>
    <message><source>删除失败</source><translation>The file could not be deleted</translation></message>
    <message><source>备份到U盘</source><translation>Back up to stick</translation></message>
    <message><source>从U盘导入</source><translation>Import from stick</translation></message>
    <message><source>文件名太长</source><translation>The file name is too long</translation></message>
    <message><source>文件名不能以点开头,也不能包含/等特殊字符</source><translation>A file name must not begin with a dot or contain / or other special characters</translation></message>
    <message><source>以下文件导入失败:</source><translation>These files could not be imported:</translation></message>
    <message><source>正在复制文件,请稍候</source><translation>Copying files, please wait</translation></message>
    <message><source>正在备份,请稍候</source><translation>Writing the backup, please wait</translation></message>
    <message><source>正在导入,请稍候</source><translation>Reading the backup, please wait</translation></message>
    <message><source>导入失败</source><translation>The import failed</translation></message>
    <message><source>打开的文档列表恢复失败</source><translation>The list of open documents could not be restored</translation></message>
    <message><source>同时恢复打开的文档列表</source><translation>Also restore the list of open documents</translation></message>
    <!-- Box calibration -->
    <message><source>最大BOx校正区域</source><translation>Largest box field</translation></message>
    <message><source>中心偏移量X</source><translation>Centre offset X</translation></message>
    <message><source>中心偏移量Y</source><translation>Centre offset Y</translation></message>
    <message><source>旋转角度</source><translation>Rotation</translation></message>
    <message><source>振镜1 = X</source><translation>Mirror 1 = X</translation></message>
    <message><source>振镜2 = X</source><translation>Mirror 2 = X</translation></message>
    <message><source>反向</source><translation>Invert</translation></message>
    <message><source>比例</source><translation>Scale</translation></message>
    <message><source>X比例</source><translation>X scale</translation></message>
    <message><source>Y比例</source><translation>Y scale</translation></message>
    <message><source>X偏移量</source><translation>X offset</translation></message>
    <message><source>Y偏移量</source><translation>Y offset</translation></message>
    <message><source>激光紧急停止</source><translation>Laser emergency stop</translation></message>
    <message><source>桶形</source><translation>Barrel</translation></message>
    <message><source>平行四边形</source><translation>Parallelogram</translation></message>
    <message><source>梯形</source><translation>Trapezoid</translation></message>
    <message><source>振镜1</source><translation>Mirror 1</translation></message>
    <message><source>振镜2</source><translation>Mirror 2</translation></message>
    <message><source>校正向导</source><translation>Calibration wizard</translation></message>
    <message><source>比例计算</source><translation>Scale calculator</translation></message>
    <message><source>层参数</source><translation>Layer</translation></message>
    <message><source>层号</source><translation>Layer</translation></message>
    <message><source>速度</source><translation>Speed</translation></message>
    <message><source>跳转速度</source><translation>Jump speed</translation></message>
    <message><source>校正类型</source><translation>Calibration type</translation></message>
    <message><source>手动校正</source><translation>Manual calibration</translation></message>
    <message><source>9点校正</source><translation>9-point calibration</translation></message>
    <message><source>25点校正</source><translation>25-point calibration</translation></message>
    <message><source>标准校正</source><translation>Standard calibration</translation></message>
    <message><source>振镜设置</source><translation>Scanner settings</translation></message>
    <message><source>高精度校正</source><translation>High-precision calibration</translation></message>
    <message><source>红光校正</source><translation>Red-light calibration</translation></message>
    <message><source>手动补偿</source><translation>Manual compensation</translation></message>
    <message><source>当前长度</source><translation>Measured length</translation></message>
    <message><source>计算</source><translation>Calculate</translation></message>
    <!-- High-precision calibration -->
    <message><source>原始坐标</source><translation>Ideal position</translation></message>
    <message><source>测量坐标X</source><translation>Measured X</translation></message>
    <message><source>测量坐标Y</source><translation>Measured Y</translation></message>
    <message><source>十字</source><translation>Cross</translation></message>
    <message><source>整圆</source><translation>Circle</translation></message>
    <message><source>单点</source><translation>Point</translation></message>
    <message><source>行</source><translation>row</translation></message>
    <message><source>列</source><translation>column</translation></message>
    <message><source>(第</source><translation>(row </translation></message>
    <message><source>行)</source><translation>)</translation></message>
    <message><source>成功</source><translation>Succeeded</translation></message>
    <message><source>失败</source><translation>Failed</translation></message>
    <message><source>测量校正</source><translation>Measured calibration</translation></message>
    <message><source>平台辅助校正</source><translation>Stage-assisted calibration</translation></message>
    <message><source>启用高精度校正</source><translation>Use high-precision calibration</translation></message>
    <message><source>高精度校正设置(重设校正范围后,请从3X3开始校正)</source><translation>High-precision settings (after a change of the range begin with 3X3)</translation></message>
    <message><source>校正范围</source><translation>Range</translation></message>
    <message><source>校正点数</source><translation>Points</translation></message>
    <message><source>重置校正列表</source><translation>Reset list</translation></message>
    <message><source>标刻验证图形</source><translation>Mark test pattern</translation></message>
    <message><source>方向线条长边指向X正,短边指向Y正</source><translation>The long direction line points to X+, the short one to Y+</translation></message>
    <message><source>十字线长度</source><translation>Cross length</translation></message>
    <message><source>使能平台</source><translation>Use stage</translation></message>
    <message><source>标刻</source><translation>Mark</translation></message>
    <message><source>圆半径</source><translation>Circle radius</translation></message>
    <message><source>填充</source><translation>Hatch</translation></message>
    <message><source>填充间距</source><translation>Hatch spacing</translation></message>
    <message><source>移动X方向取反</source><translation>Invert stage X</translation></message>
    <message><source>移动Y方向取反</source><translation>Invert stage Y</translation></message>
    <message><source>启用CCD(模板0)</source><translation>Use CCD (template 0)</translation></message>
    <message><source>移动速度</source><translation>Stage speed</translation></message>
    <message><source>移动加速度</source><translation>Stage acceleration</translation></message>
    <message><source>自动导入(或手动输入)校正数据</source><translation>Import (or type in) the measured data</translation></message>
    <message><source>导入校正数据</source><translation>Import measured data</translation></message>
    <message><source>X反向导入</source><translation>Import X inverted</translation></message>
    <message><source>Y反向导入</source><translation>Import Y inverted</translation></message>
    <message><source>导入时自动排序</source><translation>Sort while importing</translation></message>
    <message><source>编号</source><translation>No.</translation></message>
    <message><source>执行校正</source><translation>Calibrate</translation></message>
    <message><source>选择文件</source><translation>Choose file</translation></message>
    <message><source>文件打开失败</source><translation>The file could not be opened</translation></message>
    <message><source>同一次测量数据请不要重复执行</source><translation>Do not apply the same measurement twice</translation></message>
    <message><source>将基于上一次数据重新计算新值，请确认是否继续</source><translation>New values will be calculated on top of the last data. Continue?</translation></message>
    <!-- Motion -->
    <message><source>使能运控</source><translation>Enable motion</translation></message>
    <message><source>轴数</source><translation>Axes</translation></message>
    <message><source>最大速度</source><translation>Maximum speed</translation></message>
    <message><source>最大加速度</source><translation>Maximum acceleration</translation></message>
    <message><source>轴号</source><translation>Axis</translation></message>
    <message><source>默认速度</source><translation>Default speed</translation></message>
    <message><source>默认加速度</source><translation>Default acceleration</translation></message>
    <message><source>稳定时间</source><translation>Settling time</translation></message>
    <message><source>回原点设置</source><translation>Homing</translation></message>
    <message><source>回原点完成信号</source><translation>Homing done signal</translation></message>
    <message><source>输出位</source><translation>Output</translation></message>
    <message><source>时间</source><translation>Time</translation></message>
    <message><source>高电平有效</source><translation>Active high</translation></message>
    <message><source>开机回原点</source><translation>Home at start</translation></message>
    <message><source>轴名称</source><translation>Axis name</translation></message>
    <message><source>电机号</source><translation>Motor</translation></message>
    <message><source>轴模式</source><translation>Axis mode</translation></message>
    <message><source>平移轴</source><translation>Linear axis</translation></message>
    <message><source>旋转轴</source><translation>Rotary axis</translation></message>
    <message><source>轴反馈模式</source><translation>Feedback</translation></message>
    <message><source>内部脉冲计数</source><translation>Internal pulse count</translation></message>
    <message><source>外部编码器</source><translation>External encoder</translation></message>
    <message><source>每转脉冲数</source><translation>Pulses per turn</translation></message>
    <message><source>螺距</source><translation>Screw pitch</translation></message>
    <message><source>半径</source><translation>Radius</translation></message>
    <message><source>减速比</source><translation>Gear ratio</translation></message>
    <message><source>回原点模式</source><translation>Homing mode</translation></message>
    <message><source>高速速度</source><translation>High speed</translation></message>
    <message><source>高速加速度</source><translation>High-speed acceleration</translation></message>
    <message><source>低速速度</source><translation>Low speed</translation></message>
    <message><source>低速加速度</source><translation>Low-speed acceleration</translation></message>
    <message><source>回零次数</source><translation>Approaches</translation></message>
    <message><source>返回距离</source><translation>Back-off distance</translation></message>
    <message><source>限位有效</source><translation>Limits active</translation></message>
    <message><source>限位取反</source><translation>Invert limits</translation></message>
    <message><source>脉冲取反</source><translation>Invert pulses</translation></message>
    <message><source>驱动报警有效</source><translation>Driver alarm active</translation></message>
    <message><source>驱动报警取反</source><translation>Invert driver alarm</translation></message>
    <message><source>点动取反</source><translation>Invert jog</translation></message>
    <message><source>启用软限位</source><translation>Use soft limits</translation></message>
    <message><source>左限位</source><translation>Lower limit</translation></message>
    <message><source>右限位</source><translation>Upper limit</translation></message>
    <message><source>以正限位为原点</source><translation>Positive limit</translation></message>
    <message><source>以负限位为原点</source><translation>Negative limit</translation></message>
    <message><source>正向HOME点</source><translation>Home switch forwards</translation></message>
    <message><source>负向HOME点</source><translation>Home switch backwards</translation></message>
    <message><source>正向Z向</source><translation>Index forwards</translation></message>
    <message><source>负向Z向</source><translation>Index backwards</translation></message>
    <message><source>正向限位后Z向</source><translation>Positive limit, then index</translation></message>
    <message><source>负向限位后Z向</source><translation>Negative limit, then index</translation></message>
    <message><source>一键回原点</source><translation>Home all</translation></message>
    <message><source>阻塞</source><translation>Wait</translation></message>
    <message><source>回原点</source><translation>Home</translation></message>
    <message><source>正在回原点,请稍候</source><translation>Homing, please wait</translation></message>
    <message><source>正在移动,请稍候</source><translation>Moving, please wait</translation></message>
    <message><source>正在停止</source><translation>Stopping</translation></message>
    <message><source>移动</source><translation>Move</translation></message>
    <message><source>清零</source><translation>Zero</translation></message>
    <message><source>快速移动</source><translation>Fast</translation></message>
    <message><source>相对移动</source><translation>Relative</translation></message>
    <message><source>基本参数</source><translation>General</translation></message>
    <!-- Marking on the fly -->
    <message><source>FlyType</source><translation>Kind</translation></message>
    <message><source>FlyTypeLine</source><translation>Line</translation></message>
    <message><source>EncSrc</source><translation>Encoder</translation></message>
    <message><source>InnerEncoder</source><translation>Inner encoder</translation></message>
    <message><source>OuterEncoder</source><translation>Outer encoder</translation></message>
    <message><source>EnableInnerEnc</source><translation>Use inner encoder</translation></message>
    <message><source>PulseInterval</source><translation>Pulse interval</translation></message>
    <message><source>InnerEncDir</source><translation>Inner encoder direction</translation></message>
    <message><source>ExPulseDir</source><translation>Outer encoder direction</translation></message>
    <message><source>ForwardDir</source><translation>Forward</translation></message>
    <message><source>OppositeDir</source><translation>Opposite</translation></message>
    <message><source>EnableEncRange</source><translation>Use encoder range</translation></message>
    <message><source>EncRange</source><translation>Encoder range</translation></message>
    <message><source>PulseMM(mm)</source><translation>Pulses per mm (mm)</translation></message>
    <message><source>XPulseQyantity</source><translation>Pulses per mm X</translation></message>
    <message><source>YPulseQyantity</source><translation>Pulses per mm Y</translation></message>
    <message><source>EncPos</source><translation>Encoder count</translation></message>
    <message><source>SetEncPos</source><translation>Set encoder count</translation></message>
    <message><source>LineMarkParam</source><translation>Line marking</translation></message>
    <message><source>RotateMarkParam</source><translation>Rotary marking</translation></message>
    <message><source>Save</source><translation>Save</translation></message>
    <!-- Layer parameters -->
    <message><source>笔号</source><translation>Pen</translation></message>
    <message><source>高级</source><translation>Advanced</translation></message>
    <message><source>颜色</source><translation>Colour</translation></message>
    <message><source>工作次数</source><translation>Mark count</translation></message>
    <message><source>工作速度</source><translation>Mark speed</translation></message>
    <message><source>功率百分比</source><translation>Power percent</translation></message>
    <message><source>波形号</source><translation>Waveform</translation></message>
    <message><source>脉宽</source><translation>Pulse width</translation></message>
    <message><source>频率</source><translation>Frequency</translation></message>
    <message><source>占空比</source><translation>Duty</translation></message>
    <message><source>脉宽(us)</source><translation>Pulse width (us)</translation></message>
    <message><source>开光延时</source><translation>Laser-on delay</translation></message>
    <message><source>关光延时</source><translation>Laser-off delay</translation></message>
    <message><source>结束延时</source><translation>End delay</translation></message>
    <message><source>拐角延时</source><translation>Corner delay</translation></message>
    <message><source>最大跳转延时</source><translation>Maximum jump delay</translation></message>
    <message><source>打标延时</source><translation>Mark delay</translation></message>
    <message><source>最小跳转延时</source><translation>Minimum jump delay</translation></message>
    <message><source>单点时间</source><translation>Point time</translation></message>
    <message><source>单点波形</source><translation>Point curve</translation></message>
    <message><source>直线波形</source><translation>Line curve</translation></message>
    <message><source>最大跳转延时距离</source><translation>Maximum jump delay distance</translation></message>
    <message><source>抖动</source><translation>Wobble</translation></message>
    <message><source>抖动直径</source><translation>Wobble diameter</translation></message>
    <message><source>抖动间距</source><translation>Wobble spacing</translation></message>
    <message><source>RedSpeed</source><translation>Red-light speed</translation></message>
    <message><source>使用默认参数</source><translation>Use defaults</translation></message>
    <message><source>编辑</source><translation>Edit</translation></message>
    <message><source>应用</source><translation>Apply</translation></message>
    <message><source>层参数应用</source><translation>Apply to layer</translation></message>
    <message><source>设为默认参数</source><translation>Set as defaults</translation></message>
    <message><source>高级层参数设置</source><translation>Advanced layer parameters</translation></message>
    <message><source>激光器波形</source><translation>Laser waveform</translation></message>
    <message><source>红光速度</source><translation>Red-light speed</translation></message>
    <!-- Tool properties -->
    <message><source>位置X</source><translation>X</translation></message>
    <message><source>位置Y</source><translation>Y</translation></message>
    <message><source>宽度</source><translation>Width</translation></message>
    <message><source>高度</source><translation>Height</translation></message>
    <message><source>角度</source><translation>Angle</translation></message>
    <message><source>吸附</source><translation>Snap</translation></message>
    <message><source>吸附设置</source><translation>Snap settings</translation></message>
    <message><source>吸附到对象</source><translation>Snap to objects</translation></message>
    <message><source>吸附到网格</source><translation>Snap to the grid</translation></message>
    <message><source>对齐其他对象</source><translation>In line with other objects</translation></message>
    <message><source>吸附距离</source><translation>Snap within</translation></message>
    <message><source>锁定方向</source><translation>Lock direction</translation></message>
    <message><source>等比缩放</source><translation>Keep ratio</translation></message>
    <message><source>对象移动当量</source><translation>Move step</translation></message>
    <message><source>不工作</source><translation>Do not mark</translation></message>
    <message><source>居中</source><translation>Centre</translation></message>
    <message><source>应用&lt;&lt;</source><translation>Apply&lt;&lt;</translation></message>
    <message><source>填充设置</source><translation>Hatch settings</translation></message>
    <message><source>基准点</source><translation>Base</translation></message>
    <message><source>修改X坐标为</source><translation> X set to </translation></message>
    <message><source>修改Y坐标为</source><translation> Y set to </translation></message>
    <message><source>修改宽度为</source><translation> width set to </translation></message>
    <message><source>修改高度为</source><translation> height set to </translation></message>
    <message><source>修改角度为</source><translation> angle set to </translation></message>
    <!-- Hatch -->
    <message><source>使能填充</source><translation>Use hatch</translation></message>
    <message><source>填充角度</source><translation>Hatch angle</translation></message>
    <message><source>填充层号</source><translation>Hatch layer</translation></message>
    <message><source>填充缩进</source><translation>Hatch indent</translation></message>
    <message><source>绕边次数</source><translation>Outline loops</translation></message>
    <message><source>填充类型</source><translation>Hatch type</translation></message>
    <message><source>单向填充</source><translation>One way</translation></message>
    <message><source>来回填充</source><translation>Back and forth</translation></message>
    <message><source>整体弓形</source><translation>Serpentine, whole</translation></message>
    <message><source>分段弓形</source><translation>Serpentine, by piece</translation></message>
    <message><source>回形填充</source><translation>Rings</translation></message>
    <message><source>使能轮廓</source><translation>Mark outline</translation></message>
    <message><source>先打填充</source><translation>Hatch first</translation></message>
    <message><source>ShowSimple</source><translation>Draw plainly</translation></message>
    <message><source>填充间距过小,未作更改</source><translation>The hatch spacing is too small, nothing was changed</translation></message>
    <message><source>填充线段过多,未作更改</source><translation>Too many hatch segments, nothing was changed</translation></message>
    <!-- Test grid -->
    <message><source>测试网格</source><translation>Test grid</translation></message>
    <message><source>从</source><translation>From</translation></message>
    <message><source>到</source><translation>To</translation></message>
    <message><source>个数</source><translation>Count</translation></message>
    <message><source>方格边长</source><translation>Square</translation></message>
    <message><source>方格间距</source><translation>Gap</translation></message>
    <message><source>行和列不能是同一个参数</source><translation>Rows and columns must be different parameters</translation></message>
    <message><source>笔不够,需要/空闲</source><translation>Too few pens, needed / free</translation></message>
    <message><source>超出幅面</source><translation>Larger than the drawing area</translation></message>
    <message><source>需要的笔数/空闲</source><translation>Pens needed / free</translation></message>
    <message><source>撤销只撤去图形,笔的参数保留</source><translation>Undo takes the drawing back, the pens keep their values</translation></message>
    <!-- Fonts -->
    <message><source>--&gt;</source><translation>--&gt;</translation></message>
    <message><source>&lt;--</source><translation>&lt;--</translation></message>
    <message><source>Search</source><translation>Search</translation></message>
    <message><source>Import</source><translation>Import</translation></message>
    <message><source>Import TTF</source><translation>Import TTF</translation></message>
    <message><source>Import OK:</source><translation>Imported:</translation></message>
    <message><source>please restart</source><translation>please restart</translation></message>
    <!-- Power curves -->
    <message><source>渐进</source><translation>Ramp up</translation></message>
    <message><source>渐出</source><translation>Ramp down</translation></message>
    <message><source>起始</source><translation>Start</translation></message>
    <message><source>使能直线波形</source><translation>Use line curve</translation></message>
    <message><source>使能单点波形</source><translation>Use point curve</translation></message>
    <message><source>X轴是否是距离</source><translation>X axis is distance</translation></message>
    <message><source>功率</source><translation>Power</translation></message>
    <message><source>距离</source><translation>Distance</translation></message>
    <!-- Laser selection -->
    <message><source>恩耐</source><translation>Ennai</translation></message>
    <message><source>通快</source><translation>Tongkuai</translation></message>
    <message><source>波形模式</source><translation>Waveform mode</translation></message>
    <message><source>YLS激光等待Ready信号超时,请确认</source><translation>The YLS laser did not become ready in time. Please check.</translation></message>
    <message><source>施恩激光器等待RDY_23超时,请确认</source><translation>The SN laser did not give RDY_23 in time. Please check.</translation></message>
    <message><source>施恩激光器等待EMISS_22超时,请确认</source><translation>The SN laser did not give EMISS_22 in time. Please check.</translation></message>
    <message><source>无分光</source><translation>No splitting</translation></message>
    <message><source>时间分光</source><translation>Time splitting</translation></message>
    <message><source>高速分光</source><translation>High-speed splitting</translation></message>
    <message><source>能量分光(主)</source><translation>Energy splitting (master)</translation></message>
    <message><source>能量分光(从)--2分光</source><translation>Energy splitting (slave)--2 beams</translation></message>
    <message><source>能量分光(从)--3分光</source><translation>Energy splitting (slave)--3 beams</translation></message>
    <message><source>能量分光(从)--4分光</source><translation>Energy splitting (slave)--4 beams</translation></message>
    <message><source>工作文档完成后是否降DA置为0</source><translation>Set DA to 0 when a document has ended</translation></message>
    <message><source>切换波形延时(ms)</source><translation>Waveform change delay (ms)</translation></message>
    <message><source>启用锁光控制</source><translation>Use beam lock</translation></message>
    <message><source>锁光输出号</source><translation>Beam lock output</translation></message>
    <message><source>注意:参数为重启软件生效</source><translation>Note: takes effect after a restart of the software</translation></message>
    <message><source>自动识别卡类型</source><translation>Detect card type</translation></message>
    <message><source>VZ_STAND：统一接口激光器类型（支持能量分光，时间分光，高速时间分光等激光器）</source><translation>VZ_STAND: lasers with the common interface (energy, time and high-speed time splitting)</translation></message>
    <message><source>模式</source><translation>Mode</translation></message>
    <message><source>开软件远程启动(输出:26)</source><translation>Remote start with the software (output 26)</translation></message>
    <message><source>开软件使能光闸(输出:23)</source><translation>Shutter enable with the software (output 23)</translation></message>
    <message><source>出激光使能光闸(输出:23)</source><translation>Shutter enable with emission (output 23)</translation></message>
    <message><source>出光前延时</source><translation>Delay before emission</translation></message>
    <message><source>波形锁定</source><translation>Waveform latch</translation></message>
    <message><source>D频率切换时长</source><translation>D frequency switching time</translation></message>
    <message><source>启用激光器报警捕获</source><translation>Watch laser alarm</translation></message>
    <message><source>开软件使能</source><translation>Enable with the software</translation></message>
    <!-- Serial laser -->
    <message><source>镭瑛激光器</source><translation>Leiying laser</translation></message>
    <message><source>M系列</source><translation>M series</translation></message>
    <message><source>P系列</source><translation>P series</translation></message>
    <message><source>急停键状态</source><translation>Emergency stop key</translation></message>
    <message><source>功率源启动状态</source><translation>Power source</translation></message>
    <message><source>出光始能状态</source><translation>Emission enable</translation></message>
    <message><source>出光状态</source><translation>Emission</translation></message>
    <message><source>吹气延时</source><translation>Blow delay</translation></message>
    <message><source>眼闸延时</source><translation>Shutter delay</translation></message>
    <message><source>锁未打开</source><translation>Interlock not open</translation></message>
    <message><source>紧急停机</source><translation>Emergency shutdown</translation></message>
    <message><source>功率源启动失败</source><translation>Power source did not start</translation></message>
    <message><source>风扇故障</source><translation>Fan fault</translation></message>
    <message><source>请联系厂家升级</source><translation>Please ask the maker for an upgrade</translation></message>
    <message><source>程序需要升级</source><translation>The firmware needs an upgrade</translation></message>
    <message><source>主板温度过高</source><translation>Mainboard too hot</translation></message>
    <message><source>主板温度故障</source><translation>Mainboard temperature fault</translation></message>
    <message><source>请关闭开机准备键</source><translation>Please switch the ready key off</translation></message>
    <message><source>请关闭开机时锁</source><translation>Please close the power-on lock</translation></message>
    <message><source>QBH错误</source><translation>QBH error</translation></message>
    <message><source>PD未检测到能量</source><translation>PD sees no energy</translation></message>
    <message><source>PD检测到光能量过强</source><translation>PD sees too much energy</translation></message>
    <message><source>激光器温度过高</source><translation>Laser too hot</translation></message>
    <message><source>激光器温度过低</source><translation>Laser too cold</translation></message>
    <message><source>外部输入频率过大</source><translation>Input frequency too high</translation></message>
    <message><source>能量功率设置过大</source><translation>Energy or power set too high</translation></message>
    <message><source>激励电流过小</source><translation>Pump current too low</translation></message>
    <message><source>未按准备键</source><translation>Ready key not pressed</translation></message>
    <message><source>激光器未连接</source><translation>Laser not connected</translation></message>
    <message><source>镭瑛激光器激光波形数据设置失败</source><translation>Leiying laser: waveform data could not be set</translation></message>
    <message><source>镭瑛激光器激光波形数据设置失败(M系列)</source><translation>Leiying laser: waveform data could not be set (M series)</translation></message>
    <!-- MAX laser -->
    <message><source>使能1</source><translation>Enable 1</translation></message>
    <message><source>使能2</source><translation>Enable 2</translation></message>
    <message><source>激光使能</source><translation>Laser enable</translation></message>
    <message><source>急停使能</source><translation>Emergency stop enable</translation></message>
    <message><source>MO开启</source><translation>MO on</translation></message>
    <message><source>BS开启</source><translation>BS on</translation></message>
    <message><source>开红光</source><translation>Red light on</translation></message>
    <message><source>PD使能</source><translation>PD enable</translation></message>
    <message><source>电流1(A)</source><translation>Current 1 (A)</translation></message>
    <message><source>电流4(A)</source><translation>Current 4 (A)</translation></message>
    <message><source>温度</source><translation>Temperature</translation></message>
    <message><source>漏电流</source><translation>Leakage current</translation></message>
    <message><source>配置错误</source><translation>Configuration error</translation></message>
    <message><source>电流异常</source><translation>Current error</translation></message>
    <message><source>其他错误</source><translation>Other error</translation></message>
    <message><source>电流1过流</source><translation>Overcurrent 1</translation></message>
    <message><source>电流4过流</source><translation>Overcurrent 4</translation></message>
    <message><source>设备型号</source><translation>Model</translation></message>
    <message><source>CPLD版本</source><translation>CPLD version</translation></message>
    <message><source>MCU版本</source><translation>MCU version</translation></message>
    <message><source>硬件版本</source><translation>Hardware version</translation></message>
    <message><source>光路版本</source><translation>Optics version</translation></message>
    <message><source>生产日期</source><translation>Made on</translation></message>
    <message><source>激光器连接失败</source><translation>Laser connection failed</translation></message>
    <message><source>激光器读取失败</source><translation>Laser could not be read</translation></message>
    <message><source>激光器连接成功</source><translation>Laser connected</translation></message>
    <message><source>激光器掉线</source><translation>Laser connection lost</translation></message>
    <message><source>M+百瓦级</source><translation>M+ 100 W class</translation></message>
    <message><source>-CL-13mj水冷</source><translation>-CL-13mj water-cooled</translation></message>
    <message><source>M+HP系列</source><translation>M+HP series</translation></message>
    <message><source>-CL-12mj水冷</source><translation>-CL-12mj water-cooled</translation></message>
    <message><source>300/500M+HP系列</source><translation>300/500M+HP series</translation></message>
    <message><source>M+HP百瓦级</source><translation>M+HP 100 W class</translation></message>
    <message><source>-CL-13水冷</source><translation>-CL-13 water-cooled</translation></message>
    <message><source>M+锂电</source><translation>M+ battery</translation></message>
    <message><source>500M+HP系列</source><translation>500M+HP series</translation></message>
    <message><source>M+十瓦级</source><translation>M+ 10 W class</translation></message>
    <message><source>-CL-50~100mj水冷</source><translation>-CL-50~100mj water-cooled</translation></message>
    <message><source>100M+HP系列</source><translation>100M+HP series</translation></message>
    <!-- Split laser -->
    <message><source>光路稳定时间</source><translation>Beam path settling time</translation></message>
    <message><source>振镜速度</source><translation>Scanner speed</translation></message>
    <message><source>等待出光完成</source><translation>Wait for end of emission</translation></message>
    <message><source>等待快门切换完成</source><translation>Wait for shutter switching</translation></message>
    <message><source>分光振镜闭环</source><translation>Closed-loop splitter scanner</translation></message>
    <message><source>OSS分光</source><translation>OSS splitting</translation></message>
    <message><source>通用分光</source><translation>General splitting</translation></message>
    <message><source>定制分光</source><translation>Custom splitting</translation></message>
    <message><source>单路应答--快门切换中</source><translation>Single answer--shutter switching</translation></message>
    <message><source>多路应答--快门打开</source><translation>Multiple answers--shutter open</translation></message>
    <message><source>注意:全红为正常</source><translation>Note: all red is normal</translation></message>
    <message><source>1光路使用中</source><translation>Beam path 1 in use</translation></message>
    <message><source>2光路使用中</source><translation>Beam path 2 in use</translation></message>
    <message><source>3光路使用中</source><translation>Beam path 3 in use</translation></message>
    <message><source>4光路使用中</source><translation>Beam path 4 in use</translation></message>
    <message><source>关闸是否到位</source><translation>Shutter closed</translation></message>
    <message><source>振镜规划位置</source><translation>Planned scanner position</translation></message>
    <message><source>振镜反馈位置</source><translation>Scanner feedback position</translation></message>
    <message><source>文档时间满足</source><translation>Document time met</translation></message>
    <message><source>激光器是否继续</source><translation>Laser continues</translation></message>
    <message><source>1光路打开</source><translation>Beam path 1 open</translation></message>
    <message><source>2光路打开</source><translation>Beam path 2 open</translation></message>
    <message><source>3光路打开</source><translation>Beam path 3 open</translation></message>
    <message><source>4光路打开</source><translation>Beam path 4 open</translation></message>
    <message><source>光路切换时间测试</source><translation>Switching time test</translation></message>
    <message><source>卡版本号:</source><translation>Card version:</translation></message>
    <message><source>----非0号主卡,不能设置分光参数</source><translation>----not master card 0, split parameters cannot be set</translation></message>
    <!-- Laser waveform -->
    <message><source>出光模式</source><translation>Emission mode</translation></message>
    <message><source>平均功率(W)</source><translation>Mean power (W)</translation></message>
    <message><source>峰值(W)</source><translation>Peak (W)</translation></message>
    <message><source>脉宽(ms)</source><translation>Pulse width (ms)</translation></message>
    <message><source>功率利用率</source><translation>Power use</translation></message>
    <message><source>PWM峰值</source><translation>PWM peak</translation></message>
    <message><source>PWM频率</source><translation>PWM frequency</translation></message>
    <message><source>PWM占空比</source><translation>PWM duty</translation></message>
    <message><source>频率(HZ)</source><translation>Frequency (Hz)</translation></message>
    <message><source>最小出光间隔(ms)</source><translation>Shortest emission interval (ms)</translation></message>
    <!-- Update, firmware, backup -->
    <message><source>是否更新</source><translation>Update?</translation></message>
    <message><source>服务器上有软件更新包,是否从服务器更新</source><translation>There is a software update on the server. Update from the server?</translation></message>
    <message><source>更新成功</source><translation>Update succeeded</translation></message>
    <message><source>更新失败</source><translation>Update failed</translation></message>
    <message><source>请检查网络连接</source><translation>Please check the network connection</translation></message>
    <message><source>更新软件失败,未查找到更新包</source><translation>The software was not updated: no update package was found</translation></message>
    <message><source>请选择更新文件</source><translation>Please choose the update file</translation></message>
    <message><source>更新固件成功,请断电重启</source><translation>Firmware updated. Please switch the power off and on.</translation></message>
    <message><source>更新固件失败</source><translation>The firmware update failed</translation></message>
    <message><source>更新时候请确保文件正确,以及请勿断电关机,否则需要返厂维修</source><translation>Make sure that the file is the right one and do not cut the power or shut down during the update, otherwise the device must go back to the factory</translation></message>
    <message><source>备份文件</source><translation>Backup file</translation></message>
    <message><source>导入备份文件</source><translation>Import backup file</translation></message>
    <message><source>请输入备份文件名</source><translation>Please enter a backup name</translation></message>
    <message><source>文件名已存在,请重新输入</source><translation>The name is taken already, please enter another</translation></message>
    <message><source>请输入正确的文件名</source><translation>Please enter a valid file name</translation></message>
    <message><source>备份日志</source><translation>Back up logs</translation></message>
    <message><source>备份中</source><translation>Backing up</translation></message>
    <message><source>备份失败</source><translation>Backup failed</translation></message>
    <message><source>请检查是否插了U盘</source><translation>Please check that a USB stick is plugged in</translation></message>
    <message><source>备份成功</source><translation>Backup succeeded</translation></message>
    <message><source>有文件无法读取</source><translation>A file could not be read</translation></message>
    <message><source>文件写入失败,请检查磁盘空间</source><translation>A file could not be written. Please check the space on the disk.</translation></message>
    <message><source>磁盘空间不足</source><translation>There is not enough space on the disk</translation></message>
    <message><source>文件已损坏或不是压缩包</source><translation>The file is damaged or is no zip archive</translation></message>
    <message><source>压缩包内的数据已损坏</source><translation>The data in the archive are damaged</translation></message>
    <message><source>压缩包内有不安全的文件名</source><translation>The archive holds an unsafe file name</translation></message>
    <message><source>压缩包内有重复的文件名</source><translation>The archive holds a file name twice</translation></message>
    <message><source>压缩包内有链接或特殊文件</source><translation>The archive holds a link or a special file</translation></message>
    <message><source>压缩包已加密</source><translation>The archive is encrypted</translation></message>
    <message><source>压缩包内的文件太多</source><translation>The archive holds too many files</translation></message>
    <message><source>压缩包解压后超过可用空间</source><translation>Unpacked, the archive is larger than the free space</translation></message>
    <!-- Clock, housekeeping, display -->
    <message><source>时钟更新中</source><translation>Setting the clock</translation></message>
    <message><source>从网络更新时间失败,请检测网络连接</source><translation>The time could not be taken from the network. Please check the connection.</translation></message>
    <message><source>时间更新成功</source><translation>Time updated</translation></message>
    <message><source>底层错误</source><translation>Driver error</translation></message>
    <message><source>驱动日志</source><translation>Driver log</translation></message>
    <message><source>设置成功</source><translation>Set</translation></message>
    <message><source>设置分辨率成功,重启生效,是否重启?</source><translation>The resolution is set and takes effect after a restart. Restart?</translation></message>
    <!-- System settings -->
    <message><source>画布宽</source><translation>Canvas width</translation></message>
    <message><source>画布高</source><translation>Canvas height</translation></message>
    <message><source>画布中心</source><translation>Canvas centre</translation></message>
    <message><source>最大模拟电压</source><translation>Maximum analogue voltage</translation></message>
    <message><source>切换波形延时</source><translation>Waveform change delay</translation></message>
    <message><source>粘贴偏移量</source><translation>Paste offset</translation></message>
    <message><source>首点延时</source><translation>First point delay</translation></message>
    <message><source>开机自动启动</source><translation>Open at start</translation></message>
    <message><source>无</source><translation>None</translation></message>
    <message><source>普通打标</source><translation>Single document</translation></message>
    <message><source>多文档打标</source><translation>Multi-document marking</translation></message>
    <message><source>使能镭锳激光器</source><translation>Use Leiying laser</translation></message>
    <message><source>类型</source><translation>Type</translation></message>
    <message><source>启用激光器通讯(MAX)</source><translation>Use laser communication (MAX)</translation></message>
    <message><source>红光循环时允许触发工作</source><translation>Allow a trigger during the red-light loop</translation></message>
    <message><source>缓冲区循环工作</source><translation>Loop in the card's buffer</translation></message>
    <message><source>运行时允许移动Z轴</source><translation>Allow Z moves during a run</translation></message>
    <message><source>开启权限管理</source><translation>Use user management</translation></message>
    <message><source>始能自动退出</source><translation>Automatic logout</translation></message>
    <message><source>时间(s)</source><translation>Time (s)</translation></message>
    <message><source>日志保留时间</source><translation>Days that logs are kept</translation></message>
    <message><source>打开卡</source><translation>Card opened</translation></message>
    <message><source>关闭卡</source><translation>Card closed</translation></message>
    <message><source>打标数据</source><translation>Mark data</translation></message>
    <message><source>调试信息</source><translation>Debug information</translation></message>
    <message><source>修改参数</source><translation>Parameter edits</translation></message>
    <message><source>操作记录</source><translation>Operator actions</translation></message>
    <message><source>触发记录</source><translation>Triggers</translation></message>
    <message><source>运行信息</source><translation>Run events</translation></message>
    <message><source>导出日志</source><translation>Export logs</translation></message>
    <message><source>启用闭环振镜</source><translation>Closed-loop scanner</translation></message>
    <message><source>EnableSoftReady</source><translation>Software ready signal</translation></message>
    <message><source>振镜终点停留方式</source><translation>Scanner rests at</translation></message>
    <message><source>原点</source><translation>Origin</translation></message>
    <message><source>最后一个点</source><translation>Last point</translation></message>
    <message><source>出光最小间隔</source><translation>Shortest emission interval</translation></message>
    <message><source>缓存数据</source><translation>Host buffer</translation></message>
    <message><source>板卡缓存数据</source><translation>Card buffer</translation></message>
    <message><source>下载线程缓存数据</source><translation>Download buffer</translation></message>
    <message><source>断流</source><translation>Underrun</translation></message>
    <message><source>采集板卡数据</source><translation>Record card data</translation></message>
    <message><source>卡名称</source><translation>Card name</translation></message>
    <message><source>打标模式</source><translation>Marking</translation></message>
    <message><source>焊接模式</source><translation>Welding</translation></message>
    <message><source>自定义模式</source><translation>Custom</translation></message>
    <message><source>中控模式</source><translation>Central control</translation></message>
    <message><source>二维码和文字</source><translation>Codes and text</translation></message>
    <message><source>缓升缓降</source><translation>Power ramps</translation></message>
    <message><source>飞行打标工具</source><translation>Marking on the fly</translation></message>
    <message><source>CCD工具</source><translation>CCD tool</translation></message>
    <message><source>用户定制界面设置</source><translation>Custom screen</translation></message>
    <message><source>定制界面类型</source><translation>Custom screen type</translation></message>
    <message><source>无定制界面</source><translation>No custom screen</translation></message>
    <message><source>全局定制界面</source><translation>Whole-window custom screen</translation></message>
    <message><source>嵌入振镜界面</source><translation>Embedded custom screen</translation></message>
    <message><source>隐藏主菜单</source><translation>Hide main menu</translation></message>
    <message><source>响应快捷键</source><translation>Respond to shortcut keys</translation></message>
    <message><source>响应IO</source><translation>Respond to I/O</translation></message>
    <message><source>防重天数</source><translation>Days without repetition</translation></message>
    <message><source>强制防重</source><translation>Force check</translation></message>
    <message><source>防重码设置</source><translation>Repeated code check</translation></message>
    <message><source>主机响应端口</source><translation>Host port</translation></message>
    <message><source>Tcp设置</source><translation>TCP settings</translation></message>
    <message><source>超时时间</source><translation>Time-out</translation></message>
    <message><source>圆形分辨率 </source><translation>Circle resolution </translation></message>
    <message><source>CCD连接</source><translation>CCD connected</translation></message>
    <message><source>管理员认证</source><translation>Administrator</translation></message>
    <message><source>管理员密码</source><translation>Administrator's password</translation></message>
    <message><source>请输入正确的管理员密码</source><translation>Please enter the correct administrator's password</translation></message>
    <!-- Users -->
    <message><source>用户登录</source><translation>Log in</translation></message>
    <message><source>用户名</source><translation>User</translation></message>
    <message><source>密码</source><translation>Password</translation></message>
    <message><source>登录</source><translation>Log in</translation></message>
    <message><source>登录失败,用户名或密码错误</source><translation>Login failed: wrong user or password</translation></message>
    <message><source>尝试次数过多,请%1秒后再试</source><translation>Too many attempts. Try again in %1 s.</translation></message>
    <message><source>原密码</source><translation>Old password</translation></message>
    <message><source>新密码</source><translation>New password</translation></message>
    <message><source>确认密码</source><translation>Repeat password</translation></message>
    <message><source>两次输入的密码不一致</source><translation>The two passwords differ</translation></message>
    <message><source>密码不能少于4个字符</source><translation>A password has at least 4 characters</translation></message>
    <message><source>原密码错误</source><translation>The old password is wrong</translation></message>
    <message><source>密码修改成功</source><translation>Password changed</translation></message>
    <message><source>保存失败</source><translation>Could not be saved</translation></message>
    <message><source>创建管理员</source><translation>Create administrator</translation></message>
    <message><source>请先登录</source><translation>Please log in first</translation></message>
    <message><source>需要管理员权限</source><translation>Administrator rights are needed</translation></message>
    <message><source>用户不存在</source><translation>There is no such user</translation></message>
    <message><source>用户名已存在</source><translation>The user exists already</translation></message>
    <message><source>请输入用户名</source><translation>Please enter a user name</translation></message>
    <message><source>管理员</source><translation>Admin</translation></message>
    <message><source>新建用户成功</source><translation>User created</translation></message>
    <message><source>删除用户</source><translation>Delete user</translation></message>
    <message><source>是否删除用户</source><translation>Delete the user?</translation></message>
    <message><source>不能删除最后一个管理员</source><translation>The last administrator cannot be deleted</translation></message>
    <message><source>新建文件</source><translation>New file</translation></message>
    <message><source>打开文件</source><translation>Open file</translation></message>
    <message><source>保存文件</source><translation>Save file</translation></message>
    <message><source>删除文件</source><translation>Delete file</translation></message>
    <message><source>添加对象</source><translation>Add objects</translation></message>
    <message><source>编辑对象</source><translation>Edit objects</translation></message>
    <message><source>修改打标参数</source><translation>Edit mark parameters</translation></message>
    <message><source>设置管理员密码</source><translation>Set administrator's password</translation></message>
    <message><source>密码只能包含数字</source><translation>The password may hold digits only</translation></message>
    <!-- Document view -->
    <message><source>列数</source><translation>Columns</translation></message>
    <message><source>行数</source><translation>Rows</translation></message>
    <message><source>列间距(mm)</source><translation>Column distance (mm)</translation></message>
    <message><source>行间距(mm)</source><translation>Row distance (mm)</translation></message>
    <message><source>点</source><translation>Point</translation></message>
    <message><source>线</source><translation>Line</translation></message>
    <message><source>圆弧</source><translation>Arc</translation></message>
    <message><source>曲线</source><translation>Curve</translation></message>
    <message><source>组合</source><translation>Group</translation></message>
    <message><source>移到最前</source><translation>Move to front</translation></message>
    <message><source>移到最后</source><translation>Move to back</translation></message>
    <message><source>文档没有该工具的对象</source><translation>Documents hold no objects of this tool</translation></message>
    <message><source>不能接收传来的文档</source><translation>The document that was sent cannot be taken</translation></message>
    <message><source>当前引擎没有该运算</source><translation>This engine does not have the operation</translation></message>
    <message><source>不能修改对象</source><translation>The object cannot be changed</translation></message>
    <message><source>不能添加对象</source><translation>The object cannot be added</translation></message>
    <message><source>三点不能确定圆</source><translation>The three points give no circle</translation></message>
    <!-- Texts and their fonts -->
    <message><source>编辑文字</source><translation>Edit text</translation></message>
    <message><source>输入文字,可以多行</source><translation>Enter the text, several lines if needed</translation></message>
    <message><source>大写字高(mm)</source><translation>Capital height (mm)</translation></message>
    <message><source>字间距(mm)</source><translation>Letter spacing (mm)</translation></message>
    <message><source>行距(字高倍数)</source><translation>Line distance (heights)</translation></message>
    <message><source>粗体</source><translation>Bold</translation></message>
    <message><source>斜体</source><translation>Italic</translation></message>
    <message><source>对齐</source><translation>Alignment</translation></message>
    <message><source>全部字体</source><translation>All fonts</translation></message>
    <message><source>单线字体</source><translation>Single-line fonts</translation></message>
    <message><source>轮廓字体</source><translation>Outline fonts</translation></message>
    <message><source>单线</source><translation>Single line</translation></message>
    <message><source>未安装</source><translation>Not installed</translation></message>
    <message><source>文字</source><translation>Text</translation></message>
    <message><source>工具图形</source><translation>Tool shape</translation></message>
    <!-- Drawing view: nodes of paths -->
    <message><source>插入节点</source><translation>Insert</translation></message>
    <message><source>删除节点</source><translation>Delete</translation></message>
    <message><source>角点</source><translation>Corner</translation></message>
    <message><source>平滑</source><translation>Smooth</translation></message>
    <message><source>对称</source><translation>Symmetric</translation></message>
    <message><source>直线段</source><translation>Line</translation></message>
    <message><source>曲线段</source><translation>Curve</translation></message>
    <message><source>断开</source><translation>Break</translation></message>
    <message><source>闭合</source><translation>Close</translation></message>
    <message><source>开口</source><translation>Open</translation></message>
    <message><source>多选</source><translation>Add</translation></message>
    <message><source>完成</source><translation>Done</translation></message>
    <message><source>编辑节点</source><translation>Edit nodes</translation></message>
    <message><source>转为路径</source><translation>To path</translation></message>
    <message><source>修改超出允许范围</source><translation>The change leaves the permitted range</translation></message>
    <!-- Tools of modules -->
    <message><source>贝塞尔曲线</source><translation>Bezier curve</translation></message>
    <message><source>多边形</source><translation>Polygon</translation></message>
    <message><source>星形</source><translation>Star</translation></message>
    <message><source>螺旋线</source><translation>Spiral</translation></message>
    <message><source>角数</source><translation>Corners</translation></message>
    <message><source>外接圆半径</source><translation>Radius</translation></message>
    <message><source>内径比例</source><translation>Inner ratio</translation></message>
    <message><source>圆角半径</source><translation>Rounding</translation></message>
    <message><source>起始角度</source><translation>Start angle</translation></message>
    <message><source>内半径</source><translation>Inner radius</translation></message>
    <message><source>圈距</source><translation>Pitch</translation></message>
    <message><source>圈数</source><translation>Turns</translation></message>
    <message><source>顺时针</source><translation>Clockwise</translation></message>
    <message><source>返回方式</source><translation>Way back</translation></message>
    <message><source>不返回</source><translation>None</translation></message>
    <message><source>原路返回</source><translation>The same way</translation></message>
    <message><source>继续旋转返回</source><translation>Turning on</translation></message>
    <message><source>参数不能组成图形</source><translation>These parameters give no shape</translation></message>
    <message><source>没有该对象的工具模块,不能修改参数</source><translation>The tool module of this object is missing: its parameters cannot be changed</translation></message>
    <!-- Drawing view: codes -->
    <message><source>条码</source><translation>Code</translation></message>
    <message><source>条码内容为空</source><translation>The code is empty</translation></message>
    <message><source>条码内容过长</source><translation>The content is too long for the code</translation></message>
    <message><source>条码不能编码这些字符</source><translation>The code cannot hold these characters</translation></message>
    <message><source>EAN位数错误</source><translation>Wrong number of EAN digits</translation></message>
    <message><source>EAN校验位错误</source><translation>Wrong EAN check digit</translation></message>
    <message><source>条码尺寸超出范围</source><translation>The size of the code is out of range</translation></message>
    <message><source>条码选项不可用</source><translation>The code does not have this option</translation></message>
    <message><source>条码编码失败</source><translation>The code cannot be encoded</translation></message>
    <!-- Drawing view: dialogs of codes and variables -->
    <message><source>含变量</source><translation>Variables</translation></message>
    <message><source>插入变量</source><translation>Insert variable</translation></message>
    <message><source>变量设置</source><translation>Variables...</translation></message>
    <message><source>新增</source><translation>Add</translation></message>
    <message><source>当前值</source><translation>Current value</translation></message>
    <message><source>起始值</source><translation>First value</translation></message>
    <message><source>结束值</source><translation>Last value</translation></message>
    <message><source>增量</source><translation>Step</translation></message>
    <message><source>位数(0不补零)</source><translation>Digits (0: any)</translation></message>
    <message><source>进制</source><translation>Radix</translation></message>
    <message><source>每值打标次数</source><translation>Marks of a value</translation></message>
    <message><source>用完之后</source><translation>At the end</translation></message>
    <message><source>停止打标</source><translation>Stop marking</translation></message>
    <message><source>从头开始</source><translation>Begin again</translation></message>
    <message><source>每日复位</source><translation>Daily reset</translation></message>
    <message><source>从起始值开始</source><translation>From the first value</translation></message>
    <message><source>当前值已打标次数</source><translation>Marks of the current value</translation></message>
    <message><source>CSV文件</source><translation>CSV file</translation></message>
    <message><source>分隔符</source><translation>Separator</translation></message>
    <message><source>编码</source><translation>Encoding</translation></message>
    <message><source>列名</source><translation>Column names</translation></message>
    <message><source>首行为列名</source><translation>In the first row</translation></message>
    <message><source>当前行</source><translation>Current row</translation></message>
    <message><source>开始时间</source><translation>Begins at</translation></message>
    <message><source>班次代码</source><translation>Shift code</translation></message>
    <message><source>每班持续到下一班开始</source><translation>A shift goes on until the next one begins</translation></message>
    <message><source>序列号</source><translation>Serial numbers</translation></message>
    <message><source>CSV数据</source><translation>CSV data</translation></message>
    <message><source>班次</source><translation>Shifts</translation></message>
    <message><source>绘制条码</source><translation>Draw code</translation></message>
    <message><source>编辑条码</source><translation>Edit code</translation></message>
    <message><source>输入条码内容</source><translation>Enter the content of the code</translation></message>
    <message><source>轮廓填充</source><translation>Filled outline</translation></message>
    <message><source>线条</source><translation>Lines</translation></message>
    <message><source>点阵</source><translation>Dots</translation></message>
    <message><source>按模块宽度</source><translation>By module</translation></message>
    <message><source>按总宽度</source><translation>By width</translation></message>
    <message><source>反色</source><translation>Inverted</translation></message>
    <message><source>条码类型</source><translation>Code</translation></message>
    <message><source>打标方式</source><translation>Marked as</translation></message>
    <message><source>尺寸方式</source><translation>Size</translation></message>
    <message><source>每模块线数</source><translation>Lines a module</translation></message>
    <message><source>模块宽度(mm)</source><translation>Module (mm)</translation></message>
    <message><source>总宽度(mm)</source><translation>Width (mm)</translation></message>
    <message><source>条高(mm)</source><translation>Bar height (mm)</translation></message>
    <message><source>静区(模块)</source><translation>Quiet zone</translation></message>
    <message><source>纠错等级</source><translation>Error level</translation></message>
    <message><source>规格</source><translation>Symbol size</translation></message>
    <!-- Drawing view: variables -->
    <message><source>上次打标中断电,请检查最后的工件</source><translation>The power failed while marking; check the last part</translation></message>
    <message><source>缓存循环时变量不变</source><translation>The buffer loop repeats the same values of the variables</translation></message>
    <message><source>变量格式错误</source><translation>Wrong format of a variable</translation></message>
    <message><source>没有该序列号</source><translation>There is no such serial number</translation></message>
    <message><source>序列号已用完</source><translation>The serial number is used up</translation></message>
    <message><source>没有该CSV数据</source><translation>There is no such CSV data</translation></message>
    <message><source>CSV数据已用完</source><translation>The CSV data is used up</translation></message>
    <message><source>CSV文件不可用</source><translation>The CSV file cannot be used</translation></message>
    <message><source>CSV文件内容错误</source><translation>The content of the CSV file is wrong</translation></message>
    <message><source>CSV文件没有该列</source><translation>The CSV file does not have the column</translation></message>
    <message><source>没有定义班次</source><translation>No shifts are defined</translation></message>
    <message><source>替换损坏的文件(保留其副本)</source><translation>Replace the damaged file (a copy is kept)</translation></message>
    <message><source>变量定义文件损坏</source><translation>The file of the variables is damaged</translation></message>
    <message><source>变量当前值不能保存</source><translation>The values of the variables cannot be kept</translation></message>
    <message><source>变量内容不能作为文字</source><translation>The values of the variables make no text</translation></message>
    <message><source>变量内容不能作为条码</source><translation>The values of the variables make no code</translation></message>
    <message><source>不能检查条码内容是否重复</source><translation>Whether the code was marked before cannot be told</translation></message>
    <message><source>条码内容重复</source><translation>The code was marked before</translation></message>
    <message><source>名称为空或含有不可用字符</source><translation>The name is empty or has characters that cannot be used</translation></message>
    <message><source>序列号范围错误</source><translation>The range of the serial number is wrong</translation></message>
    <message><source>当前值不在序列号范围内</source><translation>The current value is outside the range</translation></message>
    <message><source>序列号位数或进制错误</source><translation>Wrong number of digits or radix</translation></message>
    <message><source>最大值超过序列号位数</source><translation>The largest value has more digits</translation></message>
    <message><source>重复次数错误</source><translation>Wrong number of repetitions</translation></message>
    <message><source>CSV文件名不可用</source><translation>The name of the CSV file cannot be used</translation></message>
    <message><source>分隔符不可用</source><translation>The separator cannot be used</translation></message>
    <message><source>CSV行号错误</source><translation>Wrong row of the CSV file</translation></message>
    <message><source>班次时间或代码错误</source><translation>Wrong time or code of a shift</translation></message>
    <message><source>班次开始时间重复</source><translation>Two shifts begin at one time</translation></message>
    <message><source>变量过多</source><translation>Too many variables</translation></message>
    <message><source>名称重复</source><translation>A name occurs twice</translation></message>
    <!-- Drawing view: texts -->
    <message><source>文字内容为空</source><translation>The text is empty</translation></message>
    <message><source>文字超过10000个字符</source><translation>The text has more than 10,000 characters</translation></message>
    <message><source>文字含有控制字符</source><translation>The text holds a control character</translation></message>
    <message><source>文字尺寸超出范围</source><translation>The size of the text is out of range</translation></message>
    <message><source>字体不可用</source><translation>The font cannot be used</translation></message>
    <message><source>没有该单线字体</source><translation>There is no such single-line font</translation></message>
    <message><source>字体中没有这些字符</source><translation>The font does not have the characters</translation></message>
    <message><source>文字没有可打标的内容</source><translation>The text holds nothing to mark</translation></message>
    <message><source>字体未安装,改用</source><translation>The font is not installed; used instead</translation></message>
    <message><source>取自其他字体的字符</source><translation>Characters taken from another font</translation></message>
    <message><source>罗马体</source><translation>Roman</translation></message>
    <message><source>等线体</source><translation>Sans</translation></message>
    <message><source>手写体</source><translation>Handwriting</translation></message>
    <message><source>花体</source><translation>Cursive</translation></message>
    <message><source>希腊文单笔</source><translation>Greek, single stroke</translation></message>
    <message><source>等线体双笔</source><translation>Sans, double stroke</translation></message>
    <message><source>罗马体双笔</source><translation>Roman, double stroke</translation></message>
    <message><source>罗马体三笔</source><translation>Roman, triple stroke</translation></message>
    <message><source>衬线</source><translation>Serif</translation></message>
    <message><source>衬线粗体</source><translation>Serif bold</translation></message>
    <message><source>衬线斜体</source><translation>Serif italic</translation></message>
    <message><source>衬线粗斜体</source><translation>Serif bold italic</translation></message>
    <message><source>手写体双笔</source><translation>Handwriting, double</translation></message>
    <message><source>英式哥特体</source><translation>Gothic, English</translation></message>
    <message><source>德式哥特体</source><translation>Gothic, German</translation></message>
    <message><source>意式哥特体</source><translation>Gothic, Italian</translation></message>
    <message><source>英式哥特体三笔</source><translation>Gothic, English, triple</translation></message>
    <message><source>德式哥特体三笔</source><translation>Gothic, German, triple</translation></message>
    <message><source>意式哥特体三笔</source><translation>Gothic, Italian, triple</translation></message>
    <message><source>希腊文</source><translation>Greek</translation></message>
    <message><source>希腊文双笔</source><translation>Greek, double stroke</translation></message>
    <message><source>希腊文衬线</source><translation>Greek serif</translation></message>
    <message><source>西里尔文</source><translation>Cyrillic</translation></message>
    <message><source>西里尔文双笔</source><translation>Cyrillic, double stroke</translation></message>
    <message><source>数学符号小写</source><translation>Mathematics, small</translation></message>
    <message><source>数学符号大写</source><translation>Mathematics, large</translation></message>
    <message><source>图形符号</source><translation>Symbols</translation></message>
    <message><source>标记符号</source><translation>Markers</translation></message>
    <message><source>音乐符号</source><translation>Music</translation></message>
    <message><source>气象符号</source><translation>Weather</translation></message>
    <message><source>天文符号</source><translation>Astronomy</translation></message>
    <!-- Language and small dialogs -->
    <message><source>语言设置成功,重启软件后全部生效</source><translation>The language is set. Some texts change after a restart of the software.</translation></message>
    <message><source>锯齿</source><translation>Zigzag</translation></message>
    <message><source>正弦</source><translation>Sine</translation></message>
    <message><source>方波</source><translation>Square</translation></message>
    <message><source>异化类型</source><translation>Pattern</translation></message>
    <message><source>幅值(mm)</source><translation>Amplitude (mm)</translation></message>
    <message><source>周期(mm)</source><translation>Pitch (mm)</translation></message>
    <message><source>清空</source><translation>Clear</translation></message>
    <message><source>关闭</source><translation>Close</translation></message>
    <message><source>退格</source><translation>Back</translation></message>
    <message><source>添加</source><translation>Add</translation></message>
    <message><source>删除</source><translation>Delete</translation></message>
    <message><source>名称</source><translation>Name</translation></message>
    <message><source>拍照位</source><translation>Photo position</translation></message>
    <message><source>导入对象</source><translation>Imported objects</translation></message>
    <message><source>页面</source><translation>Page</translation></message>
    <message><source>未导入</source><translation>Not imported</translation></message>
    <message><source>文件不是PNG、JPEG或BMP图片</source><translation>The file is no PNG, JPEG or BMP picture</translation></message>
    <message><source>图片需要的内存过多,请降低分辨率或增大去斑点值</source><translation>The picture needs too much memory: lower its resolution, or raise the size of the specks left out</translation></message>
    <message><source>图片细节过多,请降低分辨率或增大去斑点值</source><translation>The picture has too many details: lower its resolution, or raise the size of the specks left out</translation></message>
    <message><source>文件无法打开</source><translation>The file cannot be opened</translation></message>
    <message><source>文件没有给出分辨率</source><translation>the file tells no resolution</translation></message>
    <message><source>图片文件已损坏</source><translation>The picture file is damaged</translation></message>
    <message><source>图片过大,最多5000万像素</source><translation>The picture is too large: 50 million pixels at most</translation></message>
    <message><source>图片无法处理</source><translation>The picture cannot be processed</translation></message>
    <message><source>图片处理超时,请降低分辨率或增大去斑点值</source><translation>The picture takes too long: lower its resolution, or raise the size of the specks left out</translation></message>
    <message><source>图片处理程序没有应答</source><translation>The program that processes pictures does not answer</translation></message>
    <message><source>图片尺寸超出0.01至10000 mm的范围</source><translation>The size of the picture is outside 0.01 to 10000 mm</translation></message>
    <message><source>图片中没有可描摹的区域,请调整阈值或反相</source><translation>The picture has nothing to trace: change the threshold, or invert it</translation></message>
    <message><source>加工回放</source><translation>Playback</translation></message>
    <message><source>正在计算</source><translation>Calculating</translation></message>
    <message><source>估计时间</source><translation>Estimated time</translation></message>
    <message><source>已用时间</source><translation>Time passed</translation></message>
    <message><source>剩余时间</source><translation>Time left</translation></message>
    <message><source>位置</source><translation>Position</translation></message>
    <message><source>当前图层</source><translation>Current pen</translation></message>
    <message><source>激光</source><translation>Laser</translation></message>
    <message><source>估计</source><translation>Estimate</translation></message>
    <message><source>实际</source><translation>Actual</translation></message>
    <message><source>比值</source><translation>Ratio</translation></message>
    <message><source>回到开头</source><translation>To the start</translation></message>
    <message><source>播放</source><translation>Play</translation></message>
    <message><source>仅选中对象</source><translation>Selected only</translation></message>
    <message><source>开</source><translation>On</translation></message>
    <message><source>关</source><translation>Off</translation></message>
    <message><source>没有可加工的对象</source><translation>Nothing to mark</translation></message>
    <message><source>空跳</source><translation>Jumps</translation></message>
    <message><source>延时</source><translation>Delays</translation></message>
    <message><source>结束信号</source><translation>End signal</translation></message>
    <message><source>等待结束信号应答</source><translation>Acknowledge of the end signal</translation></message>
    <message><source>不含准备、暂停和循环间隔</source><translation>Without preparation, pauses and loop delay</translation></message>
    <message><source>已终止</source><translation>Stopped</translation></message>
    <message><source>描摹图片</source><translation>Trace picture</translation></message>
    <message><source>正在处理</source><translation>Working</translation></message>
    <message><source>反相</source><translation>Invert</translation></message>
    <message><source>优化曲线</source><translation>Optimise curves</translation></message>
    <message><source>去斑点(像素)</source><translation>Specks left out (pixels)</translation></message>
    <message><source>转角平滑</source><translation>Corner smoothness</translation></message>
    <message><source>合并为一个对象</source><translation>One object for all</translation></message>
    <message><source>自动阈值</source><translation>Automatic threshold</translation></message>
    <message><source>保持比例</source><translation>Keep ratio</translation></message>
    <message><source>轮廓</source><translation>Outlines</translation></message>
    <message><source>点数</source><translation>Points</translation></message>
    <message><source>文档只读</source><translation>The document is read-only</translation></message>
    <message><source>打标时不能导入图形</source><translation>No drawing can be imported while something is marked</translation></message>
    <message><source>文件中没有可导入的对象</source><translation>The file has nothing that can be imported</translation></message>
    <message><source>图形超出坐标范围</source><translation>The drawing reaches beyond the coordinate range</translation></message>
    <message><source>导入矢量文件</source><translation>Import vector file</translation></message>
    <message><source>文件过大</source><translation>The file is too large</translation></message>
    <message><source>不支持此类文件的导入</source><translation>Files of this kind cannot be imported</translation></message>
    <message><source>不是SVG图形文件</source><translation>This is not an SVG drawing</translation></message>
    <message><source>不是DXF图形文件</source><translation>This is not a DXF drawing</translation></message>
    <message><source>不是PLT图形文件</source><translation>This is not a plotter file</translation></message>
    <message><source>不支持二进制DXF文件,请另存为文本格式</source><translation>Binary DXF files cannot be read, save the drawing as a text DXF</translation></message>
    <message><source>文件结构错误</source><translation>The structure of the file is wrong</translation></message>
    <message><source>文件不完整</source><translation>The file is incomplete</translation></message>
    <message><source>viewBox无效</source><translation>The viewBox is not usable</translation></message>
    <message><source>图形没有尺寸</source><translation>The drawing has no size</translation></message>
    <message><source>图元嵌套过深</source><translation>Elements are nested too deeply</translation></message>
    <message><source>图元引用了自身</source><translation>An element refers to itself</translation></message>
    <message><source>图元数量超过上限</source><translation>The drawing has too many elements</translation></message>
    <message><source>图形点数超过上限</source><translation>The drawing has too many points</translation></message>
    <message><source>图形过于复杂,导入超时</source><translation>The drawing is too complex, the import took too long</translation></message>
    <message><source>数值无效</source><translation>a number is not usable</translation></message>
    <message><source>内存不足</source><translation>There is not enough memory</translation></message>
    <message><source>文字过长</source><translation>the text is too long</translation></message>
    <message><source>图块重复定义,只用第一个定义</source><translation>the block is defined more than once, its first definition is used</translation></message>
    <message><source>有宽度的线按中心线导入</source><translation>lines with a width come as their centre lines</translation></message>
    <message><source>文字的格式不导入</source><translation>the formatting of the text is not imported</translation></message>
    <message><source>图形占用内存超过上限</source><translation>The drawing needs more memory than an import may take</translation></message>
    <message><source>文件内容无法处理</source><translation>What the file holds cannot be processed</translation></message>
    <message><source>字符编码无法识别,部分字符可能有误</source><translation>the character encoding is unknown, some characters may be wrong</translation></message>
    <message><source>既无线条也无填充</source><translation>it has neither line nor area</translation></message>
    <message><source>超出坐标范围</source><translation>it lies outside the coordinate range</translation></message>
    <message><source>颜色多于笔数,共用最后一支笔</source><translation>there are more colours than pens, they share the last pen</translation></message>
    <message><source>填充区域按轮廓导入</source><translation>filled areas come as their outlines</translation></message>
    <message><source>对象过多,已合并为路径</source><translation>too many objects, they are gathered into paths</translation></message>
    <message><source>首尾相接的线段已连成折线</source><translation>lines that meet end to end are joined to polylines</translation></message>
    <message><source>虚线按实线导入</source><translation>dashed lines come as full lines</translation></message>
    <message><source>未知图元</source><translation>the element is unknown</translation></message>
    <message><source>没有几何图形</source><translation>it has no geometry</translation></message>
    <message><source>不导入图片</source><translation>pictures are not imported</translation></message>
    <message><source>不支持蒙版</source><translation>masks are not applied</translation></message>
    <message><source>不支持滤镜效果</source><translation>effects are not applied</translation></message>
    <message><source>不绘制线端标记</source><translation>line ends are not drawn</translation></message>
    <message><source>不绘制图案填充</source><translation>patterns are not drawn</translation></message>
    <message><source>不播放动画</source><translation>animations are not played</translation></message>
    <message><source>不导入外部内容</source><translation>foreign content is not imported</translation></message>
    <message><source>文字中不绘制此图元</source><translation>it is not drawn within a text</translation></message>
    <message><source>不支持单个字符的位置</source><translation>places of single letters are not applied</translation></message>
    <message><source>不支持旋转字符和指定长度</source><translation>turned letters and set lengths are not applied</translation></message>
    <message><source>不支持行内偏移</source><translation>a shift within a line is not applied</translation></message>
    <message><source>以字高为单位的偏移按16像素计算</source><translation>shifts in letter sizes are counted with 16 pixels</translation></message>
    <message><source>不支持相对字号</source><translation>a font size in parts of another one is not applied</translation></message>
    <message><source>定位行之后的文字不导入</source><translation>what follows a placed line is not imported</translation></message>
    <message><source>不支持沿路径的文字</source><translation>text along a path is not imported</translation></message>
    <message><source>已按剪切路径裁剪,曲线变为折线</source><translation>it is cut along its clip, curves become polylines</translation></message>
    <message><source>全部位于剪切路径之外</source><translation>it lies outside its clip</translation></message>
    <message><source>引用的图元不存在</source><translation>it refers to an element that is not there</translation></message>
    <message><source>路径数据有误,有误处之后不导入</source><translation>path data are wrong, what follows them is not imported</translation></message>
    <message><source>变换无效,图元不导入</source><translation>the transform is not usable, the element is not imported</translation></message>
    <message><source>渐变只取第一种颜色</source><translation>of a gradient the first colour counts</translation></message>
    <message><source>不支持此样式规则</source><translation>this style rule is not applied</translation></message>
    <message><source>剪切路径中不支持此图元</source><translation>such elements are not applied in a clip</translation></message>
    <message><source>用于其他语言或其他程序</source><translation>it is meant for another language or another program</translation></message>
    <message><source>图元的属性过多</source><translation>an element has too many attributes</translation></message>
    <message><source>文件未指定单位,按毫米计算</source><translation>the file names no unit, millimetres are assumed</translation></message>
    <message><source>已隐藏,或所在图层已关闭或冻结</source><translation>it is hidden, or its layer is off or frozen</translation></message>
    <message><source>字体由单线字体代替</source><translation>its font is replaced by a single-line font</translation></message>
    <message><source>字体中没有的字符</source><translation>characters that the font lacks</translation></message>
    <message><source>字体由轮廓字体代替</source><translation>its font is replaced by an outline font</translation></message>
    <message><source>拟合点样条按经过各点的曲线导入</source><translation>a spline of fit points comes as a curve through them</translation></message>
    <message><source>不导入尺寸标注</source><translation>dimensions are not imported</translation></message>
    <message><source>不导入无限长的线</source><translation>lines without end are not imported</translation></message>
    <message><source>填充按边界轮廓导入</source><translation>hatches come as their outlines</translation></message>
    <message><source>高度被忽略,投影到平面</source><translation>heights are left out, it is projected onto the plane</translation></message>
    <message><source>不导入三维实体</source><translation>solids are not imported</translation></message>
    <message><source>引用的图块不存在</source><translation>it refers to a block that is not there</translation></message>
    <message><source>不支持此类图元</source><translation>entities of this kind are not imported</translation></message>
    <message><source>不导入图纸空间的图元</source><translation>entities of the paper space are not imported</translation></message>
    <message><source>倾斜平面上的图元按投影导入</source><translation>on a tilted plane, it comes as its projection</translation></message>
    <message><source>网格不导入</source><translation>meshes are not imported</translation></message>
    <message><source>属性定义不导入</source><translation>definitions of attributes are not imported</translation></message>
    <message><source>有SC但无IP,按A4绘图仪的P1、P2计算</source><translation>SC without IP, the P1 and P2 of an A4 plotter are assumed</translation></message>
    <message><source>未选笔,按1号笔导入</source><translation>no pen is chosen, pen 1 is assumed</translation></message>
    <message><source>未知指令</source><translation>the command is unknown</translation></message>
    <message><source>参数有误</source><translation>its arguments are wrong</translation></message>
    <message><source>不绘制刻度和符号</source><translation>ticks and symbols are not drawn</translation></message>
    <message><source>图层</source><translation>Layer</translation></message>
    <message><source>详见日志</source><translation>see the log</translation></message>
    <message><source>文件单位</source><translation>Unit of the file</translation></message>
    <message><source>已转换</source><translation>Converted</translation></message>
    <message><source>所有图形文件</source><translation>All drawings</translation></message>
    <message><source>任务失败</source><translation>Job fails</translation></message>
    <message><source>Flash写入失败</source><translation>Flash write fails</translation></message>
    <message><source>停止无响应</source><translation>Stop not obeyed</translation></message>
    <message><source>IO超时</source><translation>I/O time-out</translation></message>
    <message><source>等待运动模块</source><translation>Waiting for motion</translation></message>
    <message><source>等待振镜</source><translation>Waiting for mirrors</translation></message>
    <message><source>等待</source><translation>Waiting</translation></message>
    <message><source>振镜闭环异常</source><translation>Scan loop bad</translation></message>
    <message><source>X反馈异常</source><translation>X feedback bad</translation></message>
    <message><source>Y反馈异常</source><translation>Y feedback bad</translation></message>
    <message><source>X振镜报警</source><translation>X mirror alarm</translation></message>
    <message><source>Y振镜报警</source><translation>Y mirror alarm</translation></message>
    <message><source>X无反馈</source><translation>X no feedback</translation></message>
    <message><source>Y无反馈</source><translation>Y no feedback</translation></message>
    <message><source>振镜初始化中</source><translation>Scan head starts</translation></message>
    <message><source>振镜过流</source><translation>Scan overcurrent</translation></message>
    <message><source>振镜电源异常</source><translation>Scan power bad</translation></message>
    <message><source>X位置超差</source><translation>X position off</translation></message>
    <message><source>Y位置超差</source><translation>Y position off</translation></message>
    <message><source>输出卡死</source><translation>Outputs stuck</translation></message>
    <message><source>激光器不就绪</source><translation>Laser not ready</translation></message>
    <message><source>激光器不出光</source><translation>No laser emission</translation></message>
    <message><source>数值超出范围</source><translation>The value is out of range</translation></message>
    <message><source>模拟机台没有此部件</source><translation>The machine has no such part</translation></message>
    <message><source>Flash尚未写入数据</source><translation>Nothing has been written to the flash</translation></message>
    <message><source>没有可测量的十字或标记点</source><translation>There is neither a cross nor a mark point to be measured</translation></message>
    <message><source>电机</source><translation>Motor </translation></message>
    <message><source>驱动报警</source><translation>driver alarm</translation></message>
    <message><source>正限位卡死</source><translation>limit + stuck</translation></message>
    <message><source>负限位卡死</source><translation>limit - stuck</translation></message>
    <message><source>原点开关卡死</source><translation>home stuck</translation></message>
    <message><source>原点开关失效</source><translation>home dead</translation></message>
    <message><source>联轴器打滑</source><translation>slips</translation></message>
    <message><source>振镜通信断开</source><translation>Scan link down</translation></message>
    <message><source>编码器停转</source><translation>Encoder stopped</translation></message>
    <message><source>分光器断线</source><translation>Splitter link down</translation></message>
    <message><source>分光振镜卡死</source><translation>Splitter mirror stuck</translation></message>
    <message><source>皮带速度(mm/s)</source><translation>Belt speed (mm/s)</translation></message>
    <message><source>皮带编码器(脉冲/mm)</source><translation>Belt encoder (pulses/mm)</translation></message>
    <message><source>编码器计数</source><translation>Encoder count</translation></message>
    <message><source>分光卡号</source><translation>Splitter card number</translation></message>
    <message><source>分光振镜位置</source><translation>Splitter mirror place</translation></message>
    <message><source>当前光路</source><translation>Light path in use</translation></message>
    <message><source>Flash首地址</source><translation>First flash address</translation></message>
    <message><source>Flash末地址</source><translation>End of flash</translation></message>
    <message><source>Flash已写字节</source><translation>Flash bytes written</translation></message>
    <message><source>导出Flash内容</source><translation>Export flash</translation></message>
    <message><source>外围设备</source><translation>Devices</translation></message>
    <message><source>卡未打开</source><translation>Card closed</translation></message>
    <message><source>已暂停</source><translation>Paused</translation></message>
    <message><source>空闲</source><translation>Idle</translation></message>
    <message><source>最快</source><translation>Fastest</translation></message>
    <message><source>输入</source><translation>Inputs</translation></message>
    <message><source>输出</source><translation>Outputs</translation></message>
    <message><source>加工轨迹</source><translation>Trace</translation></message>
    <message><source>外接矩形</source><translation>Rectangle</translation></message>
    <message><source>凸包</source><translation>Hull</translation></message>
    <message><source>模拟故障</source><translation>Faults</translation></message>
    <message><source>模拟机台</source><translation>Simulated machine</translation></message>
    <message><source>旋转</source><translation>Rotation</translation></message>
    <message><source>Y轴倾斜</source><translation>Y axis leans by</translation></message>
    <message><source>X梯形</source><translation>Trapezoid X</translation></message>
    <message><source>Y梯形</source><translation>Trapezoid Y</translation></message>
    <message><source>噪声</source><translation>Noise</translation></message>
    <message><source>随机种子</source><translation>Seed</translation></message>
    <message><source>红光X比例</source><translation>Pilot scale X</translation></message>
    <message><source>红光Y比例</source><translation>Pilot scale Y</translation></message>
    <message><source>红光X偏移量</source><translation>Pilot offset X</translation></message>
    <message><source>红光Y偏移量</source><translation>Pilot offset Y</translation></message>
    <message><source>振镜模型</source><translation>Scan head</translation></message>
    <message><source>理想振镜</source><translation>Ideal head</translation></message>
    <message><source>测量十字</source><translation>Measure crosses</translation></message>
    <message><source>高精度校正已生效</source><translation>A correction table is in force</translation></message>
    <message><source>高精度校正未生效</source><translation>No correction table is in force</translation></message>
    <message><source>已应用,下一任务生效</source><translation>Applied: it acts from the next job on</translation></message>
    <message><source>显示空跳</source><translation>Show jumps</translation></message>
    <message><source>导出轨迹</source><translation>Export trace</translation></message>
    <message><source>任务</source><translation>Jobs</translation></message>
    <message><source>用时</source><translation>Time</translation></message>
    <!-- Inputs and outputs, laser alarms: pages and titles -->
    <message><source>IO功能设置</source><translation>Functions</translation></message>
    <message><source>输出设置</source><translation>Outputs</translation></message>
    <message><source>IO状态</source><translation>State and names</translation></message>
    <message><source>功能</source><translation>Function</translation></message>
    <message><source>延时响应</source><translation>Delayed response</translation></message>
    <message><source>延时时间</source><translation>Delay</translation></message>
    <message><source>启用输入</source><translation>Use inputs</translation></message>
    <message><source>启用输出</source><translation>Use outputs</translation></message>
    <message><source>灯塔</source><translation>Stack light</translation></message>
    <message><source>红光与保护气体</source><translation>Pilot light and shielding gas</translation></message>
    <message><source>红光名称</source><translation>Pilot light name</translation></message>
    <message><source>气体名称</source><translation>Gas name</translation></message>
    <message><source>设置IO名称</source><translation>Edit names</translation></message>
    <message><source>保存IO名称</source><translation>Save names</translation></message>
    <message><source>编码器</source><translation>Encoder</translation></message>
    <message><source>波形测试</source><translation>Waveform test</translation></message>
    <message><source>激光器报警设置</source><translation>Laser alarm settings</translation></message>
    <message><source>启用</source><translation>Use</translation></message>
    <!-- Alarm history, stop that is not confirmed yet -->
    <message><source>报警记录</source><translation>Alarm history</translation></message>
    <message><source>全部报警</source><translation>All alarms</translation></message>
    <message><source>当前报警</source><translation>Active alarms</translation></message>
    <message><source>确认报警</source><translation>Acknowledge</translation></message>
    <message><source>确认全部</source><translation>Acknowledge all</translation></message>
    <message><source>首发</source><translation>First</translation></message>
    <message><source>触发时间</source><translation>Raised</translation></message>
    <message><source>报警内容</source><translation>Alarm</translation></message>
    <message><source>清除时间</source><translation>Cleared</translation></message>
    <message><source>确认时间</source><translation>Acknowledged</translation></message>
    <message><source>确认人</source><translation>By</translation></message>
    <message><source>报警中</source><translation>Active</translation></message>
    <message><source>已清除</source><translation>Cleared</translation></message>
    <message><source>程序退出</source><translation>Program ended</translation></message>
    <message><source>程序中断</source><translation>Program broke off</translation></message>
    <message><source>未登录</source><translation>Not logged in</translation></message>
    <message><source>导出报警记录</source><translation>Export the alarm history</translation></message>
    <message><source>已导出</source><translation>Exported</translation></message>
    <message><source>报警记录读取失败</source><translation>The alarm history could not be read</translation></message>
    <message><source>报警记录无法保存到磁盘</source><translation>The alarm history cannot be stored on the disk</translation></message>
    <message><source>板卡系统报警</source><translation>Card system alarm</translation></message>
    <message><source>光纤激光器报警已锁定</source><translation>Fibre laser alarm, latched</translation></message>
    <message><source>状态</source><translation>State</translation></message>
    <message><source>导出</source><translation>Export</translation></message>
    <message><source>导出失败</source><translation>Export failed</translation></message>
    <message><source>数据量过大</source><translation>There is too much data</translation></message>
    <message><source>轨迹文件的扩展名须为.svg、.png或.csv</source><translation>The name of a trace file must end in .svg, .png or .csv</translation></message>
    <message><source>轨迹点数过多,无法导出为图形,请导出为.csv</source><translation>The trace has too many points for a drawing. Please export it as .csv.</translation></message>
    <message><source>停止中</source><translation>Stopping</translation></message>
    <message><source>停止未确认</source><translation>Stop unconfirmed</translation></message>
    <message><source>停止已确认</source><translation>Stop confirmed</translation></message>
    <message><source>停止未确认,请按硬件急停</source><translation>Stop unconfirmed: press the hardware E-stop</translation></message>
    <!-- Multi-document run -->
    <message><source>运行次数</source><translation>Runs</translation></message>
    <message><source>触发序号</source><translation>Trigger no.</translation></message>
    <message><source>最近运行</source><translation>Last run</translation></message>
    <message><source>可能同时触发,只运行靠前的文档</source><translation>Can fire on the same change, only the upper one runs</translation></message>
    <message><source>%1对文档仅在多个输入同时变化时同时触发,只运行靠前的文档</source><translation>Pairs that fire together only if several inputs change at once: %1 (the upper one runs)</translation></message>
    <message><source>多文档保存失败</source><translation>The project could not be saved</translation></message>
</context>
</TS>
