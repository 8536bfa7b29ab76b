#include "dxf/dxf_p.h"
#include "dxf/dxf_primitives.h"

#include "platform/ansi.h"
#include "platform/convert.h"

namespace faroven {

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
    QString codeText;
    int codeLine = 0;
    for (;;) {
        if (m_text->Eof()) {
            m_atEnd = true;
            return ReadResult::Nothing;
        }
        codeText = Trim(FromAnsi(m_text->ReadLine()));
        codeLine = m_text->LineNumber();
        if (!codeText.isEmpty()) break;
    }
    int code = 0;
    if (!TryStrToInt(codeText, code) || code < 0 || code > 0xFFFF)
        throw EConvertError(QStringLiteral("'%1' is not a valid group code (line %2 of \"%3\")")
                                .arg(codeText).arg(codeLine).arg(m_text->Name()));
    m_code = uint16_t(code);
    m_line = codeLine;
    const QString raw = FromAnsi(m_text->ReadLine());
    const int valueLine = m_text->LineNumber();
    if (m_text->Eof()) {
        // The last group of the file is not converted: it ends the walk.
        m_atEnd = true;
        return ReadResult::LastGroup;
    }
    try {
        switch (DxfValueType(m_code)) {
        case TDxfValueType::Text: m_value = Trim(raw); break;
        case TDxfValueType::Real: m_value = dxf_detail::readReal(raw); break;
        case TDxfValueType::Integer: m_value = dxf_detail::readInteger(raw); break;
        case TDxfValueType::Untyped: m_value = raw; break;
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
