#include "dxf/dxf_p.h"
#include "dxf/dxf_primitives.h"

#include "platform/ansi.h"
#include "platform/convert.h"

#include <charconv>
#include <cstring>
#include <cmath>

namespace faroven {

namespace {

QByteArrayView trimmed(QByteArrayView v) {
    qsizetype first = 0, last = v.size();
    while (first < last && uint8_t(v[first]) <= ' ') ++first;
    while (last > first && uint8_t(v[last - 1]) <= ' ') --last;
    return v.sliced(first, last - first);
}

// The common forms of numbers, read straight from the bytes; anything else
// (or any doubt: out of range, odd forms) returns false and goes the general
// way, which gives the same value or the error message.
bool fastInteger(QByteArrayView v, int& out) {
    qsizetype i = 0;
    const bool negative = !v.isEmpty() && v[0] == '-';
    if (!v.isEmpty() && (v[0] == '-' || v[0] == '+')) ++i;
    if (i == v.size() || v.size() - i > 9) return false;
    int value = 0;
    for (; i < v.size(); ++i) {
        if (v[i] < '0' || v[i] > '9') return false;
        value = value * 10 + (v[i] - '0');
    }
    out = negative ? -value : value;
    return true;
}

bool fastReal(QByteArrayView v, double& out) {
    char ascii[64];
    if (v.size() >= qsizetype(sizeof ascii)) return false;
    qsizetype i = 0, n = 0;
    if (i < v.size() && (v[i] == '-' || v[i] == '+')) {
        if (v[i] == '-') ascii[n++] = '-';
        ++i;
    }
    int digits = 0;
    bool separator = false;
    for (; i < v.size(); ++i) {
        const char c = v[i];
        if (c >= '0' && c <= '9') {
            ++digits;
            ascii[n++] = c;
        } else if ((c == '.' || c == ',') && !separator) {
            separator = true;
            ascii[n++] = '.';
        } else {
            break;
        }
    }
    if (digits == 0) return false;
    if (i < v.size()) {
        if (v[i] != 'e' && v[i] != 'E') return false;
        ascii[n++] = 'e';
        ++i;
        if (i < v.size() && (v[i] == '-' || v[i] == '+')) ascii[n++] = v[i++];
        if (i == v.size()) return false;
        for (; i < v.size(); ++i) {
            if (v[i] < '0' || v[i] > '9') return false;
            ascii[n++] = v[i];
        }
    }
    double value = 0;
    const auto [end, error] = std::from_chars(ascii, ascii + n, value);
    if (error != std::errc() || end != ascii + n || !std::isfinite(value)) return false;
    out = value;
    return true;
}

}  // namespace

TDXFRead::TDXFRead(const QString& fileName) : TDXFRead(std::make_unique<TTextFileReader>(fileName)) {}

TDXFRead::TDXFRead(TStream& stream, const QString& name)
    : TDXFRead(std::make_unique<TTextFileReader>(stream, name)) {}

std::unique_ptr<TDXFRead> TDXFRead::FromBytes(const QByteArray& bytes, const QString& name) {
    return std::unique_ptr<TDXFRead>(new TDXFRead(std::make_unique<TTextFileReader>(bytes, name)));
}

TDXFRead::TDXFRead(std::unique_ptr<TTextFileReader> text) : m_text(std::move(text)) {
    m_isR12 = true;
    start();
}

TDXFRead::~TDXFRead() = default;

const QString& TDXFRead::Name() const { return m_text->Name(); }

void TDXFRead::start() {
    m_section = scUnknow;
    m_code = 0;
    m_value.Clear();
    m_atEnd = false;
    m_line = 0;
    ConsumeGroup();
    NextSection();
}

void TDXFRead::Rewind() {
    m_text->Reset();
    start();
}

// Reads one group. Blank lines where a code line is due are passed over (as
// the framework's number input skips line ends), so blank lines after the last
// group end the file quietly. The code line must hold a whole number 0..65535.
TDXFRead::ReadResult TDXFRead::readGroup() {
    QByteArrayView codeText;
    int codeLine = 0;
    for (;;) {
        if (m_text->Eof()) {
            m_atEnd = true;
            return ReadResult::Nothing;
        }
        codeText = trimmed(m_text->ReadLineView());
        codeLine = m_text->LineNumber();
        if (!codeText.isEmpty()) break;
    }
    int code = 0;
    if (!fastInteger(codeText, code)) {
        const QString text = Trim(FromAnsi(codeText.data(), int(codeText.size())));
        if (!TryStrToInt(text, code)) code = -1;
    }
    if (code < 0 || code > 0xFFFF)
        throw EConvertError(QStringLiteral("'%1' is not a valid group code (line %2 of \"%3\")")
                                .arg(FromAnsi(codeText.data(), int(codeText.size())))
                                .arg(codeLine)
                                .arg(m_text->Name()));
    m_code = uint16_t(code);
    m_line = codeLine;
    // Eof() may refill the read buffer under the view: the value is copied
    // into a buffer of the reader's own first (which keeps its capacity).
    const QByteArrayView line = m_text->ReadLineView();
    m_valueBytes.resize(line.size());
    if (!line.isEmpty()) std::memcpy(m_valueBytes.data(), line.data(), size_t(line.size()));
    const QByteArrayView raw(m_valueBytes);
    const int valueLine = m_text->LineNumber();
    if (m_text->Eof()) {
        // The last group of the file is not converted: it ends the walk.
        m_atEnd = true;
        return ReadResult::LastGroup;
    }
    try {
        const QByteArrayView value = trimmed(raw);
        switch (DxfValueType(m_code)) {
        case TDxfValueType::Text: m_value = FromAnsi(value.data(), int(value.size())); break;
        case TDxfValueType::Real: {
            double real = 0;
            if (fastReal(value, real)) m_value = real;
            else m_value = dxf_detail::readReal(FromAnsi(raw.data(), int(raw.size())));
            break;
        }
        case TDxfValueType::Integer: {
            int integer = 0;
            if (fastInteger(value, integer)) m_value = integer;
            else m_value = dxf_detail::readInteger(FromAnsi(raw.data(), int(raw.size())));
            break;
        }
        case TDxfValueType::Untyped: m_value = FromAnsi(raw.data(), int(raw.size())); break;
        }
    } catch (const EConvertError& e) {
        throw EConvertError(QStringLiteral("%1 (group code %2, line %3 of \"%4\")")
                                .arg(e.Message()).arg(m_code).arg(valueLine).arg(m_text->Name()));
    }
    return ReadResult::Group;
}

bool TDXFRead::ConsumeGroup() { return readGroup() == ReadResult::Group; }

void TDXFRead::NextSection() {
    m_section = scUnknow;
    while (!(m_code == 0 && m_value == TVariant("SECTION")))
        if (!ConsumeGroup()) return;
    ConsumeGroup();
    static const char* const names[] = {"HEADER", "TABLES", "BLOCKS", "ENTITIES", "CLASSES"};
    static const TSections sections[] = {scHeader, scTables, scBlocks, scEntities, scClasses};
    for (int i = 0; i < 5; ++i) {
        if (m_value == TVariant(names[i])) {
            m_section = sections[i];
            break;
        }
    }
    ConsumeGroup();
}

uint16_t TDXFRead::ReadAnEntry(uint16_t code, TGroupTable& entry) {
    if (m_atEnd) return 0;
    while (m_code != code && m_code != 0)
        if (!ConsumeGroup()) return 0;
    if (m_code == 0 && code != 0) return 0;
    do {
        // The entry keeps codes 0..255 and 1000..1255; all others are dropped.
        if (m_code <= 255 || (m_code >= 1000 && m_code <= 1255)) entry.SetValue(m_code, m_value);
        const ReadResult result = readGroup();
        if (result == ReadResult::Nothing) return 0;
        if (result == ReadResult::LastGroup) return (m_code == code || m_code == 0) ? code : 0;
    } while (m_code != code && m_code != 0);
    return code;
}

}  // namespace faroven
