// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/document/variabletemplate.h"

#include <QRegularExpression>

namespace sim {

namespace {

constexpr int kMostOffsetDays = 36525; // 100 years

class TemplateParser {
public:
    TemplateParser(const QString& text, VariableProblem& problem)
        : m_text(text)
        , m_problem(problem) {}

    std::vector<TemplatePart> run() {
        while (m_problem.ok() && m_place < m_text.size())
            step();
        flush();
        if (!m_problem.ok())
            m_parts.clear();
        return std::move(m_parts);
    }

private:
    void step() {
        const QChar c = m_text.at(m_place);
        const bool doubled = m_place + 1 < m_text.size() && m_text.at(m_place + 1) == c;
        if ((c == QLatin1Char('{') || c == QLatin1Char('}')) && doubled) {
            m_literal += c;
            m_place += 2;
        } else if (c == QLatin1Char('{')) {
            takeVariable();
        } else if (c == QLatin1Char('}')) {
            fail(QStringLiteral("}"));
        } else {
            m_literal += c;
            ++m_place;
        }
    }

    void takeVariable() {
        const int end = m_text.indexOf(QLatin1Char('}'), m_place);
        const QString inside = m_text.mid(m_place + 1, end < 0 ? -1 : end - m_place - 1);
        if (end < 0 || inside.contains(QLatin1Char('{'))) {
            fail(QStringLiteral("{") + inside);
            return;
        }
        flush();
        if (!takePart(inside))
            fail(QStringLiteral("{%1}").arg(inside));
        m_place = end + 1;
    }

    bool takePart(const QString& inside) {
        const int colon = inside.indexOf(QLatin1Char(':'));
        const QString head = colon < 0 ? inside : inside.left(colon);
        const QString rest = colon < 0 ? QString() : inside.mid(colon + 1);
        TemplatePart part;
        if (inside == QLatin1String("shift")) {
            part.kind = TemplatePart::Kind::Shift;
        } else if (head == QLatin1String("serial")) {
            part.kind = TemplatePart::Kind::Serial;
            part.text = rest;
        } else if (head == QLatin1String("csv")) {
            const int second = rest.indexOf(QLatin1Char(':'));
            part.kind = TemplatePart::Kind::Csv;
            part.text = rest.left(second);
            part.column = second < 0 ? QString() : rest.mid(second + 1);
            if (part.column.isEmpty())
                return false;
        } else if (!takeDate(head, rest, part)) {
            return false;
        }
        if (part.text.isEmpty() && part.kind != TemplatePart::Kind::Shift)
            return false;
        m_parts.push_back(part);
        return true;
    }

    static bool takeDate(const QString& head, const QString& format, TemplatePart& part) {
        static const QRegularExpression form(QStringLiteral("^(date|shiftdate)([+-][0-9]{1,5})?$"));
        const QRegularExpressionMatch match = form.match(head);
        if (!match.hasMatch())
            return false;
        part.kind =
            match.captured(1) == QLatin1String("date") ? TemplatePart::Kind::Date : TemplatePart::Kind::ShiftDate;
        part.offsetDays = match.captured(2).toInt();
        part.text = format;
        return std::abs(part.offsetDays) <= kMostOffsetDays;
    }

    void flush() {
        if (m_literal.isEmpty())
            return;
        TemplatePart part;
        part.text = m_literal;
        m_literal.clear();
        m_parts.push_back(part);
    }

    void fail(const QString& what) { m_problem = {VariableFault::BadTemplate, what}; }

    const QString& m_text;
    VariableProblem& m_problem;
    int m_place = 0;
    QString m_literal;
    std::vector<TemplatePart> m_parts;
};

} // namespace

std::vector<TemplatePart> parseTemplate(const QString& text, VariableProblem& problem) {
    problem = {};
    return TemplateParser(text, problem).run();
}

} // namespace sim
