// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/importnotes.h"

#include "engine/languagemanager.h"

namespace sim {

namespace {

struct NoteKey {
    Note note;
    const char* key;
};

constexpr NoteKey kKeys[] = {
    {Note::FileTooLarge, "文件过大"},
    {Note::UnknownKind, "不支持此类文件的导入"},
    {Note::NotSvg, "不是SVG图形文件"},
    {Note::NotDxf, "不是DXF图形文件"},
    {Note::NotPlt, "不是PLT图形文件"},
    {Note::BinaryDxf, "不支持二进制DXF文件,请另存为文本格式"},
    {Note::XmlFault, "文件结构错误"},
    {Note::CutOff, "文件不完整"},
    {Note::BadViewBox, "viewBox无效"},
    {Note::NoSize, "图形没有尺寸"},
    {Note::TooDeep, "图元嵌套过深"},
    {Note::RefersToItself, "图元引用了自身"},
    {Note::TooManyElements, "图元数量超过上限"},
    {Note::TooManyPoints, "图形点数超过上限"},
    {Note::TooLong, "图形过于复杂,导入超时"},
    {Note::BadNumber, "数值无效"},
    {Note::NoMemory, "内存不足"},
    {Note::TooMuchMemory, "图形占用内存超过上限"},
    {Note::Unreadable, "文件内容无法处理"},
    {Note::Encoding, "字符编码无法识别,部分字符可能有误"},
    {Note::NoLineNoArea, "既无线条也无填充"},
    {Note::OutOfRange, "超出坐标范围"},
    {Note::SharedPen, "颜色多于笔数,共用最后一支笔"},
    {Note::AreaAsOutline, "填充区域按轮廓导入"},
    {Note::Gathered, "对象过多,已合并为路径"},
    {Note::Joined, "首尾相接的线段已连成折线"},
    {Note::Dashed, "虚线按实线导入"},
    {Note::UnknownElement, "未知图元"},
    {Note::Nothing, "没有几何图形"},
    {Note::TextTooLong, "文字过长"},
    {Note::Pictures, "不导入图片"},
    {Note::Masks, "不支持蒙版"},
    {Note::Effects, "不支持滤镜效果"},
    {Note::LineEnds, "不绘制线端标记"},
    {Note::Patterns, "不绘制图案填充"},
    {Note::Animations, "不播放动画"},
    {Note::ForeignContent, "不导入外部内容"},
    {Note::NotInText, "文字中不绘制此图元"},
    {Note::LetterPlaces, "不支持单个字符的位置"},
    {Note::TurnedLetters, "不支持旋转字符和指定长度"},
    {Note::LineShift, "不支持行内偏移"},
    {Note::EmShift, "以字高为单位的偏移按16像素计算"},
    {Note::RelativeFontSize, "不支持相对字号"},
    {Note::AfterPlacedLine, "定位行之后的文字不导入"},
    {Note::TextPath, "不支持沿路径的文字"},
    {Note::Clipped, "已按剪切路径裁剪,曲线变为折线"},
    {Note::ClippedAway, "全部位于剪切路径之外"},
    {Note::BadReference, "引用的图元不存在"},
    {Note::BadPath, "路径数据有误,有误处之后不导入"},
    {Note::BadTransform, "变换无效,图元不导入"},
    {Note::Gradient, "渐变只取第一种颜色"},
    {Note::StyleRule, "不支持此样式规则"},
    {Note::NotInClip, "剪切路径中不支持此图元"},
    {Note::OtherReader, "用于其他语言或其他程序"},
    {Note::ManyAttributes, "图元的属性过多"},
    {Note::NoUnit, "文件未指定单位,按毫米计算"},
    {Note::Hidden, "已隐藏,或所在图层已关闭或冻结"},
    {Note::FontReplaced, "字体由单线字体代替"},
    {Note::FontReplacedOutline, "字体由轮廓字体代替"},
    {Note::NoGlyph, "字体中没有的字符"},
    {Note::FitPoints, "拟合点样条按经过各点的曲线导入"},
    {Note::Dimension, "不导入尺寸标注"},
    {Note::Infinite, "不导入无限长的线"},
    {Note::HatchOutline, "填充按边界轮廓导入"},
    {Note::Flattened, "高度被忽略,投影到平面"},
    {Note::Solid3d, "不导入三维实体"},
    {Note::MissingBlock, "引用的图块不存在"},
    {Note::BlockAgain, "图块重复定义,只用第一个定义"},
    {Note::LineWidth, "有宽度的线按中心线导入"},
    {Note::TextFormat, "文字的格式不导入"},
    {Note::Proxy, "不支持此类图元"},
    {Note::PaperSpace, "不导入图纸空间的图元"},
    {Note::Tilted, "倾斜平面上的图元按投影导入"},
    {Note::MeshOutline, "网格不导入"},
    {Note::Attribute, "属性定义不导入"},
    {Note::NoFrame, "有SC但无IP,按A4绘图仪的P1、P2计算"},
    {Note::NoPenCommand, "未选笔,按1号笔导入"},
    {Note::UnknownCommand, "未知指令"},
    {Note::BadArguments, "参数有误"},
    {Note::Tick, "不绘制刻度和符号"},
};

} // namespace

QString noteText(Note note) {
    for (const NoteKey& entry : kKeys) {
        if (entry.note == note)
            return LanguageManager::GetLanText(QString::fromUtf8(entry.key));
    }
    return QString();
}

} // namespace sim
