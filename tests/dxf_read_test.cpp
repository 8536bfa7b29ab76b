// The DXF reader: values typed by group code, trimmed only for text codes,
// numbers read with a point or a comma in either locale; sections and entries
// walked to the end of real files; the end of file and bad input ending in a
// result or a named error with the decimal separator unchanged. Also the
// entry table's slots, the palette and the homogeneous-point helpers.
#include "dxf/dxf_primitives.h"
#include "fuzz/dxf_read_harness.h"
#include "platform/convert.h"
#include "platform/stream.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <gtest/gtest.h>

#include "support/test_support.h"
#include "tests/text_printers.h"

using namespace faroven;

namespace {

const QString kData = QStringLiteral(FAROVEN_TEST_DATA);

// DXF text from its lines, joined with LF.
QByteArray dxf(std::initializer_list<const char*> lines) {
    QByteArray out;
    for (const char* line : lines) out += QByteArray(line) + '\n';
    return out;
}

std::unique_ptr<TDXFRead> reader(const QByteArray& bytes) { return TDXFRead::FromBytes(bytes, QStringLiteral("test.dxf")); }

// A reader on one group inside an ENTITIES section, followed by an end group.
std::unique_ptr<TDXFRead> onGroup(const char* code, const char* value) {
    return reader(dxf({"0", "SECTION", "2", "ENTITIES", code, value, "0", "EOF"}));
}

QString convertMessage(const std::function<void()>& f) { return test::MessageOf<EConvertError>(f); }

QByteArray readFile(const QString& name) {
    QFile file(name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    return file.readAll();
}

// Both process-wide separators: every reading test runs under each.
class EitherSeparator : public ::testing::TestWithParam<char> {
protected:
    void SetUp() override { SetDecimalSeparator(QChar(GetParam())); }
    void TearDown() override { EXPECT_EQ(DecimalSeparator(), QChar(GetParam())) << "separator not restored"; }
};

// ---------------------------------------------------------------- typing

struct TypingCase {
    int code;
    TVarType type;
};

class TypingByCode : public ::testing::TestWithParam<TypingCase> {};

TEST_P(TypingByCode, RangeBoundaries) {
    const QByteArray code = QByteArray::number(GetParam().code);
    auto r = onGroup(code.constData(), "  7  ");
    EXPECT_EQ(r->CurrentGroupCode(), GetParam().code);
    EXPECT_EQ(r->CurrentValue().VarType(), GetParam().type) << "code " << GetParam().code;
    switch (GetParam().type) {
    case varString:
        // Text codes are trimmed, untyped codes keep the line as it stands.
        if (DxfValueType(GetParam().code) == TDxfValueType::Text)
            EXPECT_EQ(r->CurrentValue().AsString(), QStringLiteral("7"));
        else
            EXPECT_EQ(r->CurrentValue().AsString(), QStringLiteral("  7  "));
        break;
    default: EXPECT_EQ(r->CurrentValue().AsDouble(), 7.0); break;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Codes, TypingByCode,
    ::testing::Values(TypingCase{0, varString}, TypingCase{9, varString}, TypingCase{10, varDouble},
                      TypingCase{59, varDouble}, TypingCase{60, varInteger}, TypingCase{79, varInteger},
                      TypingCase{80, varString}, TypingCase{139, varString}, TypingCase{140, varDouble},
                      TypingCase{147, varDouble}, TypingCase{148, varString}, TypingCase{169, varString},
                      TypingCase{170, varInteger}, TypingCase{175, varInteger}, TypingCase{176, varString},
                      TypingCase{209, varString}, TypingCase{210, varDouble}, TypingCase{239, varDouble},
                      TypingCase{240, varString}, TypingCase{998, varString}, TypingCase{999, varString},
                      TypingCase{1009, varString}, TypingCase{1010, varDouble}, TypingCase{1059, varDouble},
                      TypingCase{1060, varInteger}, TypingCase{1079, varInteger}, TypingCase{1080, varString},
                      TypingCase{65535, varString}),
    [](const auto& info) { return "code" + std::to_string(info.param.code); });

TEST(Typing, TextTrimmedOnlyForTextCodes) {
    EXPECT_EQ(onGroup("1", " Hello DXF \t")->CurrentValue(), TVariant("Hello DXF"));
    EXPECT_EQ(onGroup("1000", " note ")->CurrentValue(), TVariant("note"));
    EXPECT_EQ(onGroup("999", " comment ")->CurrentValue(), TVariant("comment"));
    EXPECT_EQ(onGroup("100", " AcDbLine ")->CurrentValue(), TVariant(" AcDbLine "));
    EXPECT_EQ(onGroup("330", "1F  ")->CurrentValue(), TVariant("1F  "));
    EXPECT_EQ(onGroup("1", "")->CurrentValue(), TVariant(""));
}

TEST(Typing, IntegerWithBlanksReadsAsItsNumber) {
    auto r = onGroup(" 70", "    70");
    EXPECT_EQ(r->CurrentGroupCode(), 70);
    EXPECT_EQ(r->CurrentValue(), TVariant(70));
    EXPECT_TRUE(r->CurrentValue().IsInteger());
    EXPECT_EQ(onGroup("1071", "-2147483648")->CurrentValue(), TVariant(-2147483647 - 1));
}

TEST(Typing, Windows1252Text) {
    auto r = onGroup("1", "caf\xe9 \x80");
    EXPECT_EQ(r->CurrentValue().AsString(), QString::fromUtf8("caf\u00e9 \u20ac"));
}

TEST_P(EitherSeparator, PointOrCommaReadTheSame) {
    EXPECT_EQ(onGroup("10", "12,5")->CurrentValue(), TVariant(12.5));
    EXPECT_EQ(onGroup("10", "12.5")->CurrentValue(), TVariant(12.5));
    EXPECT_EQ(onGroup("40", " -0,25 ")->CurrentValue(), TVariant(-0.25));
    EXPECT_EQ(onGroup("1040", "1e+20")->CurrentValue(), TVariant(1e20));
    EXPECT_EQ(onGroup("210", "3")->CurrentValue(), TVariant(3.0));
    EXPECT_TRUE(onGroup("210", "3")->CurrentValue().IsDouble());
}

TEST_P(EitherSeparator, MixedSeparatorsAreAnError) {
    // A point anywhere makes the point the separator, so the comma is stray.
    EXPECT_THROW(onGroup("10", "1,234.5"), EConvertError);
    EXPECT_THROW(onGroup("10", "1,2,3"), EConvertError);
}

INSTANTIATE_TEST_SUITE_P(Locales, EitherSeparator, ::testing::Values('.', ','),
                         [](const auto& info) { return info.param == '.' ? "point" : "comma"; });

// ---------------------------------------------------------------- sections

TEST(Sections, NewReaderStandsInsideTheFirstSection) {
    auto r = reader(dxf({"999", "made by hand", "0", "SECTION", "2", "TABLES", "0", "TABLE", "0", "EOF"}));
    EXPECT_EQ(r->CurrentSection(), scTables);
    EXPECT_EQ(r->CurrentGroupCode(), 0);
    EXPECT_EQ(r->CurrentValue(), TVariant("TABLE"));
    EXPECT_TRUE(r->IsR12DXF());
    EXPECT_EQ(r->CurrentLine(), 7);
}

TEST(Sections, NamesAndOrdinals) {
    auto r = reader(dxf({"0", "SECTION", "2", "HEADER", "0", "ENDSEC",  //
                         "0", "SECTION", "2", "CLASSES", "0", "ENDSEC", //
                         "0", "SECTION", "2", "OBJECTS", "0", "ENDSEC", //
                         "0", "SECTION", "2", "BLOCKS", "0", "ENDSEC",  //
                         "0", "SECTION", "2", "entities", "0", "ENDSEC", "0", "EOF"}));
    std::vector<TSections> seen{r->CurrentSection()};
    for (int i = 0; i < 5; ++i) {
        r->NextSection();
        seen.push_back(r->CurrentSection());
    }
    EXPECT_EQ(seen, (std::vector<TSections>{scHeader, scClasses, scUnknow, scBlocks, scUnknow, scUnknow}));
    EXPECT_EQ(int(scClasses), 5);
    EXPECT_TRUE(r->Eof());
}

TEST(Sections, RewindGivesTheStateOfANewReader) {
    auto r = reader(dxf({"0", "SECTION", "2", "ENTITIES", "0", "LINE", "10", "1.5", "0", "ENDSEC", "0", "EOF"}));
    r->SetIsR12DXF(false);
    while (r->ConsumeGroup()) {
    }
    EXPECT_TRUE(r->Eof());
    r->Rewind();
    EXPECT_EQ(r->CurrentSection(), scEntities);
    EXPECT_EQ(r->CurrentValue(), TVariant("LINE"));
    EXPECT_FALSE(r->Eof());
    EXPECT_FALSE(r->IsR12DXF());  // a setting of the caller, kept
    ASSERT_TRUE(r->ConsumeGroup());
    EXPECT_EQ(r->CurrentValue(), TVariant(1.5));
}

// ---------------------------------------------------------------- entries

const QByteArray kEntities = dxf({"0", "SECTION", "2", "ENTITIES",                           //
                                  "0", "LWPOLYLINE", "8", "WALLS", "500", "dropped", "330", "1F", //
                                  "90", "3", "10", "1.0", "20", "2.0", "10", "3.0", "20", "4.0",  //
                                  "1001", "APP", "1040", "2,5", "1071", "9", "1256", "x", "2000", "y",  //
                                  "0", "LINE", "10", "5", "0", "ENDSEC", "0", "EOF"});

TEST(ReadAnEntry, CollectsUpToTheNextGroupOfTheSameCode) {
    auto r = reader(kEntities);
    TGroupTable e;
    ASSERT_EQ(r->ReadAnEntry(0, e), 0);  // code 0 entries return 0 ...
    EXPECT_EQ(e.Value(0), TVariant("LWPOLYLINE"));
    EXPECT_EQ(e.Value(8), TVariant("WALLS"));
    EXPECT_EQ(e.Value(90), TVariant("3"));  // untyped: the text as it stands
    EXPECT_EQ(e.Value(10), TVariant(3.0));  // a repeated code keeps its last value
    EXPECT_EQ(e.Value(20), TVariant(4.0));
    EXPECT_EQ(e.Value(1001), TVariant("APP"));
    EXPECT_EQ(e.Value(1040), TVariant(2.5));
    EXPECT_EQ(e.Value(1071), TVariant(9));
    EXPECT_EQ(r->CurrentGroupCode(), 0);  // ... and stand on the next entity
    EXPECT_EQ(r->CurrentValue(), TVariant("LINE"));
}

TEST(ReadAnEntry, CodesWithoutSlotAreDropped) {
    auto r = reader(kEntities);
    TGroupTable e;
    r->ReadAnEntry(0, e);
    int filled = 0;
    for (size_t slot = 0; slot < e.size(); ++slot) filled += !e[slot].IsEmpty();
    // 0, 8, 90, 10, 20, 1001, 1040, 1071: not 500, 330, 1256 (no entry slot) nor 2000.
    EXPECT_EQ(filled, 8);
    EXPECT_TRUE(e[size_t(TGroupTable::SlotOf(1256))].IsEmpty());
    EXPECT_EQ(TGroupTable::SlotOf(500), -1);
    EXPECT_EQ(TGroupTable::SlotOf(999), -1);
    EXPECT_EQ(TGroupTable::SlotOf(1257), -1);
    EXPECT_EQ(TGroupTable::SlotOf(1000), 256);
    EXPECT_EQ(TGroupTable::CodeOfSlot(512), 1256);
}

TEST(ReadAnEntry, ByCodeTen) {
    auto r = reader(kEntities);
    TGroupTable e;
    // Standing on a 0 group there is no code 10 entry before it.
    EXPECT_EQ(r->ReadAnEntry(10, e), 0);
    EXPECT_EQ(r->CurrentValue(), TVariant("LWPOLYLINE"));
    ASSERT_TRUE(r->ConsumeGroup());
    ASSERT_EQ(r->ReadAnEntry(10, e), 10);
    EXPECT_EQ(e.Value(10), TVariant(1.0));
    EXPECT_EQ(e.Value(20), TVariant(2.0));
    EXPECT_FALSE(e.Has(0));  // the groups before the first 10 are skipped
    e.Clear();
    ASSERT_EQ(r->ReadAnEntry(10, e), 10);
    EXPECT_EQ(e.Value(10), TVariant(3.0));
    EXPECT_EQ(e.Value(1001), TVariant("APP"));
    EXPECT_EQ(r->CurrentValue(), TVariant("LINE"));
    // A 0 group comes before the next 10: no such entry, the reader stays.
    EXPECT_EQ(r->ReadAnEntry(10, e), 0);
    EXPECT_EQ(r->CurrentValue(), TVariant("LINE"));
}

TEST(ReadAnEntry, SlotsNotMentionedKeepTheirValue) {
    auto r = reader(kEntities);
    TGroupTable e;
    e.SetValue(62, 5);
    e.SetValue(8, "OLD");
    r->ReadAnEntry(0, e);
    EXPECT_EQ(e.Value(62), TVariant(5));
    EXPECT_EQ(e.Value(8), TVariant("WALLS"));
}

// Reads the next entry with code 0; false when there is none or the end of
// the file cut it short (code 0 entries return 0 either way).
bool nextEntry(TDXFRead& r, TGroupTable& e) {
    e.Clear();
    r.ReadAnEntry(0, e);
    return !e.Value(0).IsEmpty() && r.CurrentGroupCode() == 0;
}

TEST(ReadAnEntry, CodeZeroEntriesToTheEnd) {
    auto r = reader(kEntities);
    TGroupTable e;
    std::vector<QString> names;
    while (nextEntry(*r, e)) names.push_back(e.Value(0).AsString());
    // ENDSEC is complete: the 0 EOF group after it ends it, unconverted.
    EXPECT_EQ(names, (std::vector<QString>{"LWPOLYLINE", "LINE", "ENDSEC"}));
    EXPECT_TRUE(r->Eof());
    e.Clear();
    EXPECT_EQ(r->ReadAnEntry(0, e), 0);
    EXPECT_TRUE(e.Value(0).IsEmpty());  // at the end nothing is collected
}

TEST(ReadAnEntry, EntryCutByTheEndReturnsZero) {
    auto r = reader(dxf({"0", "SECTION", "2", "ENTITIES", "0", "LINE", "10", "1", "20", "2", "11", "3"}));
    TGroupTable e;
    ASSERT_TRUE(r->ConsumeGroup());
    EXPECT_EQ(r->ReadAnEntry(10, e), 0);
    EXPECT_EQ(e.Value(10), TVariant(1.0));  // what was read before the end stays
    EXPECT_TRUE(r->Eof());
}

// ---------------------------------------------------------------- end of file

TEST(EndOfFile, TheLastGroupIsNotConverted) {
    // The final group's value is never converted: letters in a code 10 value
    // there are no error, and the current value stays the previous one.
    auto r = reader(QByteArray("0\nSECTION\n2\nENTITIES\n0\nLINE\n10\nabc"));
    EXPECT_FALSE(r->ConsumeGroup());
    EXPECT_EQ(r->CurrentGroupCode(), 10);
    EXPECT_EQ(r->CurrentValue(), TVariant("LINE"));
    EXPECT_TRUE(r->Eof());
    EXPECT_FALSE(r->ConsumeGroup());  // stays at the end
    EXPECT_EQ(r->CurrentGroupCode(), 10);
}

TEST(EndOfFile, TrailingBlankLinesAndCtrlZEndQuietly) {
    for (const char* tail : {"", "\n\n  \n", "\x1a", "\n\x1a garbage"}) {
        auto r = reader(dxf({"0", "SECTION", "2", "ENTITIES", "0", "ENDSEC", "0", "EOF"}) + tail);
        TGroupTable e;
        EXPECT_TRUE(nextEntry(*r, e)) << tail;
        EXPECT_EQ(e.Value(0), TVariant("ENDSEC"));
        r->NextSection();
        EXPECT_EQ(r->CurrentSection(), scUnknow);
        EXPECT_TRUE(r->Eof());
    }
}

TEST(EndOfFile, EmptyAndSectionlessFiles) {
    for (const QByteArray& bytes : {QByteArray(), QByteArray("\n\n"), dxf({"999", "nothing", "0", "EOF"})}) {
        auto r = reader(bytes);
        EXPECT_EQ(r->CurrentSection(), scUnknow);
        EXPECT_TRUE(r->Eof());
        TGroupTable e;
        EXPECT_EQ(r->ReadAnEntry(0, e), 0);
        r->NextSection();
        EXPECT_EQ(r->CurrentSection(), scUnknow);
    }
}

TEST(EndOfFile, TruncatedEntryFails) {
    const QByteArray whole = dxf({"0", "SECTION", "2", "ENTITIES", "0", "LINE", "10", "1.5", "20", "2.5", "11",
                                  "3.5", "21", "4.5", "0", "ENDSEC", "0", "EOF"});
    // Cut the file at every byte: the walk ends without error, and the LINE
    // is complete once the code line of the group after it has begun.
    const qsizetype endsec = whole.indexOf("\n0\nENDSEC") + 1;
    for (qsizetype cut = 0; cut <= whole.size(); ++cut) {
        auto r = reader(whole.left(cut));
        TGroupTable e;
        int complete = 0;
        while (nextEntry(*r, e))
            if (e.Value(0) == TVariant("LINE") && e.Value(21) == TVariant(4.5)) ++complete;
        EXPECT_TRUE(r->Eof()) << cut;
        EXPECT_EQ(complete, cut > endsec ? 1 : 0) << "cut at " << cut;
    }
}

TEST(EndOfFile, LineEndsCrLfCrAndLfReadTheSame) {
    const QByteArray lf = dxf({"0", "SECTION", "2", "ENTITIES", "0", "TEXT", "1", "A", "40", "2.5", "0", "EOF"});
    for (const QByteArray& bytes : {QByteArray(lf).replace("\n", "\r\n"), QByteArray(lf).replace("\n", "\r")}) {
        auto r = reader(bytes);
        EXPECT_EQ(r->CurrentSection(), scEntities);
        TGroupTable e;
        EXPECT_TRUE(nextEntry(*r, e));
        EXPECT_EQ(e.Value(1), TVariant("A"));
        EXPECT_EQ(e.Value(40), TVariant(2.5));
    }
}

// ---------------------------------------------------------------- errors

TEST_P(EitherSeparator, BadNumberNamesTextCodeAndLine) {
    EXPECT_EQ(convertMessage([] { onGroup("10", "12.5abc"); }),
              QStringLiteral("'12.5abc' is not a valid floating point value (group code 10, line 6 of \"test.dxf\")"));
    EXPECT_EQ(convertMessage([] { onGroup("70", " 1.0 "); }),
              QStringLiteral("'1.0' is not a valid integer value (group code 70, line 6 of \"test.dxf\")"));
    EXPECT_EQ(convertMessage([] { onGroup("70", "99999999999"); }),
              QStringLiteral("'99999999999' is not a valid integer value (group code 70, line 6 of \"test.dxf\")"));
}

TEST_P(EitherSeparator, BadGroupCodeLine) {
    EXPECT_EQ(convertMessage([] { reader(QByteArray("SECTION\n0\n")); }),
              QStringLiteral("'SECTION' is not a valid group code (line 1 of \"test.dxf\")"));
    EXPECT_THROW(reader(dxf({"0", "SECTION", "70000", "x"})), EConvertError);
    EXPECT_THROW(reader(dxf({"0", "SECTION", "-1", "x"})), EConvertError);
    EXPECT_THROW(reader(dxf({"0", "SECTION", "1 0", "x"})), EConvertError);
}

TEST_P(EitherSeparator, ErrorInsideAnEntry) {
    auto r = reader(dxf({"0", "SECTION", "2", "ENTITIES", "0", "LINE", "10", "1", "20", "y", "0", "EOF"}));
    TGroupTable e;
    EXPECT_THROW(r->ReadAnEntry(0, e), EConvertError);
}

TEST(Errors, MissingFileRaisesInOutErrorNamingIt) {
    const QString name = QDir(kData).filePath(QStringLiteral("dxf/no_such_file.dxf"));
    EXPECT_TRUE(test::RaisesWith<EInOutError>([&] { TDXFRead r(name); }, name));
}

// ---------------------------------------------------------------- real files

struct Walked {
    std::vector<TSections> sections;
    // Per section: the entries read with ReadAnEntry(0).
    std::vector<std::vector<TGroupTable>> entries;
};

// Section by section, entry by entry, to the end of the file.
Walked walk(TDXFRead& r) {
    Walked w;
    while (true) {
        w.sections.push_back(r.CurrentSection());
        w.entries.emplace_back();
        TGroupTable e;
        while (nextEntry(r, e)) {
            w.entries.back().push_back(e);
            if (e.Value(0) == TVariant("ENDSEC")) break;
        }
        r.NextSection();
        if (r.Eof()) break;
    }
    return w;
}

const TGroupTable* find(const std::vector<TGroupTable>& entries, const char* type, int nth = 0) {
    for (const TGroupTable& e : entries)
        if (e.Value(0) == TVariant(type) && nth-- == 0) return &e;
    return nullptr;
}

std::vector<QString> types(const std::vector<TGroupTable>& entries) {
    std::vector<QString> out;
    for (const TGroupTable& e : entries) out.push_back(e.Value(0).AsString());
    return out;
}

// The header variable read with ReadAnEntry(9).
TVariant headerVariable(const QString& file, const char* name, int code) {
    TDXFRead r(file);
    EXPECT_EQ(r.CurrentSection(), scHeader);
    TGroupTable e;
    while (r.ReadAnEntry(9, e) == 9) {
        if (e.Value(9) == TVariant(name)) return e.Value(code);
        e.Clear();
    }
    return TVariant();
}

// The CR LF copy of this file is compared with it group by group below.
TEST(Fixtures, R12WalksToTheEnd) {
    const QString file = kData + QStringLiteral("/dxf/r12_drawing.dxf");
    TDXFRead r(file);
    const Walked w = walk(r);
    EXPECT_EQ(w.sections, (std::vector<TSections>{scHeader, scTables, scBlocks, scEntities}));
    EXPECT_EQ(headerVariable(file, "$ACADVER", 1), TVariant("AC1009"));

    const auto& tables = w.entries[1];
    const TGroupTable* walls = nullptr;
    for (int i = 0; const TGroupTable* layer = find(tables, "LAYER", i); ++i)
        if (layer->Value(2) == TVariant("WALLS")) walls = layer;
    ASSERT_TRUE(walls);
    EXPECT_EQ(walls->Value(62), TVariant(1));
    EXPECT_EQ(walls->Value(6), TVariant("DASHED"));

    const auto& blocks = w.entries[2];
    const TGroupTable* mark = nullptr;
    for (int i = 0; const TGroupTable* block = find(blocks, "BLOCK", i); ++i)
        if (block->Value(2) == TVariant("MARK")) mark = block;
    ASSERT_TRUE(mark);
    EXPECT_EQ(mark->Value(10), TVariant(1.0));

    const auto& ents = w.entries[3];
    EXPECT_EQ(types(ents), (std::vector<QString>{"LINE", "CIRCLE", "ARC", "TEXT", "POLYLINE", "VERTEX", "VERTEX",
                                                 "VERTEX", "VERTEX", "SEQEND", "INSERT", "ENDSEC"}));
    const TGroupTable* line = find(ents, "LINE");
    EXPECT_EQ(line->Value(8), TVariant("WALLS"));
    EXPECT_EQ(line->Value(11), TVariant(100.0));
    EXPECT_EQ(line->Value(21), TVariant(50.0));
    EXPECT_EQ(find(ents, "CIRCLE")->Value(40), TVariant(12.5));
    EXPECT_EQ(find(ents, "CIRCLE")->Value(62), TVariant(3));
    EXPECT_EQ(find(ents, "ARC")->Value(51), TVariant(90.0));
    EXPECT_EQ(find(ents, "TEXT")->Value(1), TVariant("Hello DXF"));
    EXPECT_EQ(find(ents, "TEXT")->Value(40), TVariant(2.5));
    EXPECT_EQ(find(ents, "POLYLINE")->Value(70), TVariant(1));
    EXPECT_EQ(find(ents, "POLYLINE")->Value(66), TVariant(1));
    EXPECT_EQ(find(ents, "VERTEX", 2)->Value(10), TVariant(10.0));
    EXPECT_EQ(find(ents, "VERTEX", 2)->Value(20), TVariant(10.0));
    EXPECT_EQ(find(ents, "INSERT")->Value(2), TVariant("MARK"));
    EXPECT_EQ(find(ents, "INSERT")->Value(50), TVariant(45.0));
    EXPECT_TRUE(r.Eof());
}

TEST(Fixtures, CrLfAndLfGiveTheSameGroups) {
    auto lf = TDXFRead(kData + QStringLiteral("/dxf/r12_drawing.dxf"));
    auto file = TFileStream(kData + QStringLiteral("/dxf/r12_drawing_crlf.dxf"), fmOpenRead);
    auto crlf = TDXFRead(file);
    int groups = 0;
    for (;;) {
        const bool a = lf.ConsumeGroup();
        const bool b = crlf.ConsumeGroup();
        ASSERT_EQ(a, b);
        ASSERT_EQ(lf.CurrentGroupCode(), crlf.CurrentGroupCode());
        ASSERT_EQ(lf.CurrentValue(), crlf.CurrentValue()) << "group " << groups;
        if (!a) break;
        ++groups;
    }
    // Every group of the file but the three that the constructor reads (0
    // SECTION, 2 HEADER, the first header group) and the final 0 EOF.
    const int lines = int(readFile(kData + QStringLiteral("/dxf/r12_drawing.dxf")).count('\n'));
    EXPECT_EQ(groups, lines / 2 - 4);
}

TEST_P(EitherSeparator, R2000WalksToTheEnd) {
    const QString file = kData + QStringLiteral("/dxf/r2000_drawing.dxf");
    TDXFRead r(file);
    const Walked w = walk(r);
    EXPECT_EQ(w.sections, (std::vector<TSections>{scHeader, scClasses, scTables, scBlocks, scEntities, scUnknow}));
    EXPECT_EQ(headerVariable(file, "$ACADVER", 1), TVariant("AC1015"));
    EXPECT_EQ(headerVariable(file, "$INSUNITS", 70), TVariant(4));

    const TGroupTable* tag = find(w.entries[3], "BLOCK", 2);
    ASSERT_TRUE(tag);
    EXPECT_EQ(tag->Value(2), TVariant("TAG"));
    EXPECT_EQ(find(w.entries[3], "ATTDEF")->Value(2), TVariant("NAME"));

    const auto& ents = w.entries[4];
    EXPECT_EQ(types(ents), (std::vector<QString>{"LINE", "CIRCLE", "ARC", "LWPOLYLINE", "TEXT", "ELLIPSE", "INSERT",
                                                 "ENDSEC"}));
    const TGroupTable* line = find(ents, "LINE");
    EXPECT_EQ(line->Value(10), TVariant(1.5));
    EXPECT_EQ(line->Value(20), TVariant(-2.25));
    EXPECT_EQ(line->Value(11), TVariant(3.75));
    EXPECT_EQ(line->Value(100), TVariant("AcDbLine"));  // the last of the two subclass markers
    EXPECT_FALSE(line->Has(330));                        // no slot
    EXPECT_EQ(line->Value(1001), TVariant("FAROVEN"));
    EXPECT_EQ(line->Value(1000), TVariant("note"));
    EXPECT_EQ(line->Value(1040), TVariant(2.5));
    EXPECT_EQ(line->Value(1070), TVariant(7));
    EXPECT_EQ(find(ents, "ARC")->Value(50), TVariant(30.0));
    EXPECT_EQ(find(ents, "ELLIPSE")->Value(42), TVariant(6.283185307179586));
    EXPECT_EQ(find(ents, "LWPOLYLINE")->Value(62), TVariant(2));
    EXPECT_TRUE(r.Eof());
}

TEST(Fixtures, LightweightPolylineVerticesByGroups) {
    // Repeated codes overwrite their slot, so vertices are walked group by group.
    TDXFRead r(kData + QStringLiteral("/dxf/r2000_drawing.dxf"));
    while (r.CurrentSection() != scEntities && !r.Eof()) r.NextSection();
    while (!(r.CurrentGroupCode() == 0 && r.CurrentValue() == TVariant("LWPOLYLINE"))) ASSERT_TRUE(r.ConsumeGroup());
    std::vector<std::pair<double, double>> vertices;
    ASSERT_TRUE(r.ConsumeGroup());
    while (r.CurrentGroupCode() != 0) {
        if (r.CurrentGroupCode() == 10) vertices.emplace_back(r.CurrentValue().AsDouble(), 0);
        if (r.CurrentGroupCode() == 20) vertices.back().second = r.CurrentValue().AsDouble();
        ASSERT_TRUE(r.ConsumeGroup());
    }
    EXPECT_EQ(vertices, (std::vector<std::pair<double, double>>{{0, 0}, {10, 0}, {10, 5}}));
}

TEST(Fixtures, BareEntitiesFileFromAStream) {
    auto bytes = TMemoryStream::FromBytes(readFile(kData + QStringLiteral("/dxf/r12_entities_only.dxf")));
    TDXFRead r(*bytes);
    EXPECT_EQ(r.CurrentSection(), scEntities);
    const Walked w = walk(r);
    ASSERT_EQ(w.entries.size(), 1u);
    EXPECT_EQ(types(w.entries[0]), (std::vector<QString>{"LINE", "CIRCLE", "ENDSEC"}));
    EXPECT_EQ(find(w.entries[0], "LINE")->Value(21), TVariant(23.0));
    EXPECT_EQ(find(w.entries[0], "CIRCLE")->Value(40), TVariant(2.0));
}

// ---------------------------------------------------------------- fuzz regressions

// Every input that once failed the fuzz target, and the seeds, run through the
// fuzzer's own walk (which aborts on a broken invariant).
TEST(FuzzReplay, EveryStoredInput) {
    int replayed = 0;
    for (const QString& folder : {kData + QStringLiteral("/fuzz/dxf_read"),
                                  kData + QStringLiteral("/../../fuzz/corpus/dxf_read_fuzzer")}) {
        QDirIterator it(folder, QDir::Files, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QByteArray bytes = readFile(it.next());
            SCOPED_TRACE(it.filePath().toStdString());
            const QChar before = DecimalSeparator();
            faroven::fuzz::runDxfRead(reinterpret_cast<const uint8_t*>(bytes.constData()), size_t(bytes.size()));
            EXPECT_EQ(DecimalSeparator(), before);
            ++replayed;
        }
    }
    EXPECT_GE(replayed, 4);
}

// ---------------------------------------------------------------- helpers of the unit

TEST(Homogeneous, CartesianPoint2D) {
    EXPECT_EQ(CartesianPoint2D({2, 4, 2}), (TPoint2D{1, 2, 1}));
    EXPECT_EQ(CartesianPoint2D({2, 4, 0}), (TPoint2D{2, 4, 0}));  // w = 0 passes through
    EXPECT_EQ(CartesianPoint2D({2, 4, 1}), (TPoint2D{2, 4, 1}));
    EXPECT_EQ(CartesianPoint2D({3, -6, -3}), (TPoint2D{-1, 2, 1}));
    EXPECT_EQ(CartesianRect2D({{2, 4, 2}, {9, 3, 3}}), (TRect2D{{1, 2, 1}, {3, 1, 1}}));
}

TEST(Homogeneous, ReorderRect2D) {
    EXPECT_EQ(ReorderRect2D({{5, 1, 1}, {2, 7, 1}}), (TRect2D{{2, 1, 1}, {5, 7, 1}}));
    EXPECT_EQ(ReorderRect2D({{5, 9, 1}, {2, 7, 1}}), (TRect2D{{2, 7, 1}, {5, 9, 1}}));
    EXPECT_EQ(ReorderRect2D({{1, 2, 1}, {3, 4, 1}}), (TRect2D{{1, 2, 1}, {3, 4, 1}}));
    // The comparison and the swap use the raw input: (8, 2, 2) vs (6, 1, 1)
    // swaps x with the raw values even though the Cartesian x are 4 and 6.
    EXPECT_EQ(ReorderRect2D({{8, 2, 2}, {6, 1, 1}}), (TRect2D{{6, 1, 1}, {8, 2, 1}}));
}

TEST(Homogeneous, Pixel2mmAndModeChange) {
    EXPECT_EQ(pixel2mm({96, 48}), (TMyPoint{25.4f, 12.7f}));
    EXPECT_EQ(pixel2mm({0, -96}), (TMyPoint{0, -25.4f}));
    for (int mode : {0, 1, 2, 3, -7}) EXPECT_EQ(ModeChange({1.5f, -2}, mode), (TMyPoint{1.5f, -2}));
}

TEST(Palette, FixedEntries) {
    const std::pair<int, TColor> fixed[] = {
        {0, RGB(255, 255, 255)}, {1, RGB(255, 0, 0)},     {2, RGB(255, 255, 0)},   {3, RGB(0, 255, 0)},
        {4, RGB(0, 255, 255)},   {5, RGB(0, 0, 255)},     {6, RGB(255, 0, 255)},   {7, RGB(0, 0, 0)},
        {8, RGB(134, 134, 134)}, {9, RGB(187, 187, 187)}, {250, RGB(0, 0, 0)},     {251, RGB(45, 45, 45)},
        {252, RGB(91, 91, 91)},  {253, RGB(137, 137, 137)}, {254, RGB(183, 183, 183)}, {255, RGB(179, 179, 179)},
        {210, RGB(255, 0, 255)}, {220, RGB(255, 0, 191)}, {230, RGB(255, 0, 127)}, {240, RGB(255, 0, 63)},
        {211, RGB(255, 127, 255)}, {221, RGB(255, 127, 223)}, {231, RGB(255, 127, 191)}, {241, RGB(255, 127, 159)},
    };
    for (const auto& [number, color] : fixed) EXPECT_EQ(DxfColorNumberToColor(number), color) << number;
    // 255 is darker than 254, on purpose.
    EXPECT_LT(GetRValue(DxfColorNumberToColor(255)), GetRValue(DxfColorNumberToColor(254)));
}

TEST(Palette, HueRows) {
    const std::pair<int, TColor> rows[] = {
        {10, RGB(255, 0, 0)},      {20, RGB(255, 63, 0)},     {40, RGB(255, 191, 0)},    {50, RGB(191, 255, 0)},
        {80, RGB(0, 255, 0)},      {100, RGB(0, 255, 63)},    {130, RGB(0, 191, 255)},   {160, RGB(0, 0, 255)},
        {190, RGB(127, 0, 255)},   {11, RGB(255, 127, 127)},  {41, RGB(255, 223, 127)},  {51, RGB(223, 255, 127)},
        {121, RGB(127, 255, 223)}, {131, RGB(127, 223, 255)}, {201, RGB(223, 127, 255)},
    };
    for (const auto& [number, color] : rows) EXPECT_EQ(DxfColorNumberToColor(number), color) << number;
}

TEST(Palette, UnsetAndOutOfRange) {
    for (int n : {12, 15, 99, 205, 249, 256, 1000, -256}) EXPECT_EQ(DxfColorNumberToColor(n), clBlack) << n;
    EXPECT_EQ(DxfColorNumberToColor(-1), DxfColorNumberToColor(1));  // a layer switched off keeps its colour
    int black = 0;
    for (int n = 0; n < 256; ++n) black += DxfColorNumberToColor(n) == clBlack;
    // Set: 0..9, 250..255, the eight magenta extras, five rows of 2 x 4 hues;
    // 7 and 250 of these are black, and every entry not set.
    const int set = 10 + 6 + 8 + 40;
    EXPECT_EQ(black, 256 - set + 2);
}

}  // namespace
