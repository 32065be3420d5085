// SPDX-License-Identifier: MIT
#pragma once

#include "engine/ccdbufdata.h"
#include "engine/layerdata.h"
#include "engine/marktypes.h"

#include <QString>
#include <QVarLengthArray>
#include <QVector>

namespace tessera {

/// What a plant host may order, in the order in which a frame is searched for it.
enum class HostOrder { Test, SetOffset, GetLayerParas, MarkStop };

/// The texts of the answers. They are part of the protocol and never translated.
constexpr char kHostBusy[] = "文档正在运行中";
constexpr char kHostBadFormat[] = "数据格式错误";
constexpr char kHostNoData[] = "有效数据为空";
constexpr char kHostBadLength[] = "有效数据长度错误";
constexpr char kHostNoDocument[] = "文档号超出范围";
constexpr char kHostRunFailed[] = "文档执行失败";
constexpr char kHostRunDone[] = "文档执行成功";
constexpr char kHostStopped[] = "终止运行成功";

/// Command name with its opening bracket.
QString const& HostPrefix(HostOrder order);
using HostOrderList = QVarLengthArray<HostOrder, 4>;
/// The orders whose prefix stands anywhere in the frame. A frame with two prefixes is two orders, in the order of the
/// enumeration and not in that of the text: hosts rely on it.
HostOrderList HostOrders(QString const& frame);
/// True when the stop is written out without arguments; "_VZMarkStop(1)" is none.
bool IsHostStop(QString const& frame);

/// Prefix, "0," or "1,", the text and ");".
QString HostReply(HostOrder order, bool good, QString const& text);
QString HostReply(HostOrder order, bool good, char const* text);

/// Arguments of a run with offsets.
struct HostOffsets {
    int document = 0; ///< from 0; a text that is no number is 0
    QVector<CCDBufdata> records;
    char const* fault = nullptr; ///< text of the refusal, null when the arguments are good
};

/// Reads "(document)" or "(document%record#record...)"; a record is seven fields parted by commas, of which five count.
/// A field that is no finite number is 0. What stands behind a second "%" does not count.
HostOffsets ReadHostOffsets(QString const& frame);

/// Arguments of a layer read-out.
struct HostLayer {
    int document = 0;       ///< from 0; a text that is no number is 0
    unsigned int layer = 0; ///< likewise; not compared with the table
    char const* fault = nullptr;
};

/// Reads "(document,layer)"; further arguments do not count.
HostLayer ReadHostLayer(QString const& frame);

/// The 18 values of a layer as they are told to a host, joined by commas.
QString HostLayerValues(LayerData const& layer, MarkCardType laser);

} // namespace tessera
