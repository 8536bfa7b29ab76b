// The walk that the DXF reader fuzzer runs on every input, shared with the
// test suite that replays inputs which once failed. Whatever the bytes, the
// walk must end with a result or one of the reader's documented errors
// (EConvertError, EInOutError); the decimal separator must be what it was;
// and what the writer makes of the entries read must read back without error.
// Any other outcome aborts, which the fuzzer reports as a finding.
#pragma once

#include "dxf/dxf_primitives.h"
#include "platform/convert.h"
#include "platform/stream.h"

#include <QByteArray>
#include <cstdio>
#include <cstdlib>

namespace faroven::fuzz {

inline void fail(const char* what) {
    std::fprintf(stderr, "dxf_read harness: %s\n", what);
    std::abort();
}

// Walks every section entry by entry, handing each entry to the writer.
inline void walkEntries(TDXFRead& reader, TDXFWrite* writer) {
    for (;;) {
        for (;;) {
            TGroupTable entry;
            if (reader.ReadAnEntry(0, entry) != 0) fail("ReadAnEntry(0) returned a code other than 0");
            if (entry.Value(0).IsEmpty()) {
                if (!reader.Eof()) fail("ReadAnEntry(0) collected nothing before the end");
                break;
            }
            if (reader.CurrentGroupCode() != 0) {
                if (!reader.Eof()) fail("ReadAnEntry(0) stopped on a group other than 0 before the end");
                break;  // cut short by the end of the file
            }
            if (writer) writer->WriteAnEntry(entry);
            if (entry.Value(0) == TVariant("ENDSEC")) break;
        }
        if (reader.Eof()) break;
        reader.NextSection();
    }
}

// Walks the reader group by group, then by entries of code 10 (each stopped
// by a 0 group, which is then stepped over).
inline void walkGroups(TDXFRead& reader) {
    while (reader.ConsumeGroup()) {
    }
    if (!reader.Eof()) fail("ConsumeGroup returned false before the end");
    reader.Rewind();
    for (;;) {
        TGroupTable entry;
        if (reader.ReadAnEntry(10, entry) != 0) {
            if (!entry.Has(10)) fail("ReadAnEntry(10) succeeded without a code 10 value");
            continue;
        }
        if (reader.Eof()) break;
        if (reader.CurrentGroupCode() != 0) fail("ReadAnEntry(10) returned 0 away from a 0 group");
        reader.ConsumeGroup();  // step past the 0 group that stopped it
    }
}

inline void runDxfRead(const uint8_t* data, size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    const QChar before = DecimalSeparator();
    // The input's length picks the process-wide separator, so that both
    // settings are explored at the cost of one walk.
    {
        const QChar separator = size % 2 ? QChar(u',') : QChar(u'.');
        SetDecimalSeparator(separator);
        TMemoryStream written;
        {
            TDXFWrite writer(written, QStringLiteral("fuzz output"));
            writer.BeginSection(scEntities);
            try {
                auto reader = TDXFRead::FromBytes(bytes, QStringLiteral("fuzz input"));
                walkEntries(*reader, &writer);
                reader->Rewind();
                walkGroups(*reader);
            } catch (const EConvertError&) {
            } catch (const EInOutError&) {
            }
            if (DecimalSeparator() != separator) fail("the reader did not restore the decimal separator");
            writer.EndSection(scEntities);
            writer.WriteGroup(0, "EOF");
            writer.Flush();
            if (DecimalSeparator() != separator) fail("the writer did not restore the decimal separator");
        }
        try {
            auto again = TDXFRead::FromBytes(written.ToByteArray(), QStringLiteral("fuzz output"));
            walkEntries(*again, nullptr);
        } catch (const Exception&) {
            fail("the writer's output does not read back");
        }
    }
    SetDecimalSeparator(before);
}

}  // namespace faroven::fuzz
