// SPDX-License-Identifier: GPL-2.0-or-later
#pragma once

#include "simengine/importers/importbudget.h"
#include "simengine/importers/svgdom.h"

#include <QPointF>
#include <QSizeF>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

namespace sim {

/// The attribute with the sizes of fonts in pixels, since the renderer knows no units there; sizes in parts of another
/// one are taken out, so that the size around counts. `relative` is set then.
QString withPixelFontSize(const QString& attribute, const QString& value, bool* relative);

/// Copies a text element so that the renderer puts each line where it belongs: it knows the place of a text, but not of
/// a span within it. The text becomes a group, each placed span a group with a text of its own. The text's own
/// transform is left out: who draws the copy applies it.
class SvgTextCopy {
public:
    /// `tell` is called with what is left out.
    SvgTextCopy(QXmlStreamReader& in, QXmlStreamWriter& out, const QSizeF& viewport, ImportBudget& budget, SvgTell tell)
        : m_in(in)
        , m_out(out)
        , m_viewport(viewport)
        , m_budget(budget)
        , m_tell(std::move(tell)) {}

    /// Copies the element at whose start the reader stands, up to its end. False when spans are nested too deeply.
    bool run();
    /// It has more letters or longer attributes than can be laid out in time; the copy is not whole then.
    bool isTooLong() const { return m_letters > kMostLetters || m_bytes > kMostBytes; }

private:
    static constexpr qint64 kMostLetters = 10000;
    static constexpr qint64 kMostBytes = 256 << 10;

    enum class Span { Text, Placed, Inline };

    bool start();
    void end();
    void startSpan();
    void characters();
    void openLine();
    void closeLine();
    void count(const QXmlStreamAttributes& attributes);
    void place(const QXmlStreamAttributes& attributes);
    void open(const QString& element, Span span);
    QString localName() const;

    QXmlStreamReader& m_in;
    QXmlStreamWriter& m_out;
    QSizeF m_viewport;
    ImportBudget& m_budget;
    SvgTell m_tell;
    std::vector<Span> m_spans;
    QPointF m_place; ///< of the next line, pixels
    qint64 m_letters = 0;
    qint64 m_bytes = 0; ///< of tags
    bool m_lineOpen = false;
    bool m_placeKnown = true; ///< false behind a placed span: nobody knows where it ended
};

} // namespace sim
