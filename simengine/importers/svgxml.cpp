// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/importers/svgxml.h"

#include <cstring>

namespace sim {

namespace {

constexpr int kMostAttributes = 1000;
constexpr int kMostDocumentType = 64 << 10;

/// One byte a character of UTF-16, so that tags look as in other encodings; as it is when it is none.
QByteArray narrowed(const QByteArray& bytes) {
    const auto at = [&](int i) { return i < bytes.size() ? uchar(bytes[i]) : 0xffu; };
    const bool low = (at(0) == 0xff && at(1) == 0xfe) || (at(0) != 0 && at(1) == 0);
    const bool high = (at(0) == 0xfe && at(1) == 0xff) || (at(0) == 0 && at(1) != 0);
    if (!low && !high)
        return bytes;
    QByteArray narrow;
    narrow.reserve(bytes.size() / 2);
    for (int i = 0; i + 1 < bytes.size(); i += 2)
        narrow += bytes[low ? i + 1 : i] == 0 ? bytes[low ? i : i + 1] : 'x';
    return narrow;
}

class TagScan {
public:
    explicit TagScan(const QByteArray& bytes)
        : m_at(bytes.constData())
        , m_end(bytes.constData() + bytes.size()) {}

    bool run() {
        bool good = true;
        while (good && find("<")) {
            if (starts("!--"))
                find("-->");
            else if (starts("![CDATA["))
                find("]]>");
            else if (starts("?"))
                find("?>");
            else
                good = tag(starts("!DOCTYPE"));
        }
        return good;
    }

private:
    bool starts(const char* text) const {
        const size_t length = std::strlen(text);
        return size_t(m_end - m_at) >= length && std::memcmp(m_at, text, length) == 0;
    }

    /// Goes behind the next such text, or to the end.
    bool find(const char* text) {
        const size_t length = std::strlen(text);
        const void* found = ::memmem(m_at, size_t(m_end - m_at), text, length);
        m_at = found ? static_cast<const char*>(found) + length : m_end;
        return found != nullptr;
    }

    /// Goes to the end of a tag, quotes passed over; false for one that is too large.
    bool tag(bool documentType) {
        const char* begin = m_at;
        int values = 0;
        int depth = 0;
        while (m_at < m_end) {
            const char c = *m_at++;
            if (c == '>' && depth == 0)
                return true;
            if (documentType && c == '<' && starts("!--")) {
                const char* const comment = m_at;
                find("-->");
                begin += m_at - comment;
                continue;
            }
            if (c == '"' || c == '\'')
                find(c == '"' ? "\"" : "'");
            values += c == '=' ? 1 : 0;
            if (documentType)
                depth += c == '[' || c == '<' ? 1 : c == ']' || c == '>' ? -1 : 0;
            if (documentType ? m_at - begin > kMostDocumentType : values > kMostAttributes)
                return false;
        }
        return true;
    }

    const char* m_at;
    const char* m_end;
};

} // namespace

bool areSvgTagsBounded(const QByteArray& bytes) {
    const QByteArray narrow = narrowed(bytes);
    return TagScan(narrow).run();
}

void skipSvgElement(QXmlStreamReader& in, ImportBudget& budget) {
    int depth = 1;
    while (depth > 0 && !in.atEnd() && budget.step()) {
        const QXmlStreamReader::TokenType token = in.readNext();
        depth += token == QXmlStreamReader::StartElement ? 1 : token == QXmlStreamReader::EndElement ? -1 : 0;
        if (depth > ImportBudget::kMostDepth)
            budget.fail(Note::TooDeep);
    }
}

} // namespace sim
