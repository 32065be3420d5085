// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/importers/importbudget.h"

#include <QPointF>
#include <QSizeF>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>
#include <functional>

namespace sim {

/// The attribute with the sizes of fonts in pixels, since the renderer knows no units there; sizes in parts of another
/// one are taken out, so that the size around counts. `relative` is set then.
QString withPixelFontSize(const QString& attribute, const QString& value, bool* relative);

/// Copies a text element so that the renderer puts each line where it belongs: it knows the place of a text, but not of
/// a span within it. The text becomes a group, each placed span a group with a text of its own.
class SvgTextCopy {
public:
    /// `tell` is called with what is left out.
    SvgTextCopy(QXmlStreamReader& in, QXmlStreamWriter& out, const QSizeF& viewport, ImportBudget& budget,
                std::function<void(const QString& kind, Note note)> tell)
        : m_in(in)
        , m_out(out)
        , m_viewport(viewport)
        , m_budget(budget)
        , m_tell(std::move(tell)) {}

    /// Copies the element at whose start the reader stands, up to its end. False when spans are nested too deeply.
    bool run();

private:
    enum class Span { Text, Placed, Inline };

    bool start();
    void end();
    void startSpan();
    void characters();
    void openLine();
    void closeLine();
    void place(const QXmlStreamAttributes& attributes);
    void open(const QString& element, Span span);
    QString localName() const;

    QXmlStreamReader& m_in;
    QXmlStreamWriter& m_out;
    QSizeF m_viewport;
    ImportBudget& m_budget;
    std::function<void(const QString&, Note)> m_tell;
    std::vector<Span> m_spans;
    QPointF m_place; ///< of the next line, pixels
    bool m_lineOpen = false;
    bool m_placeKnown = true; ///< false behind a placed span: nobody knows where it ended
};

} // namespace sim
