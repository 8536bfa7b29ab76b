// The DXF writer: exact bytes of every group kind ("%3d" codes, "%.6f" and
// "%6d" values, text cut to 255, untyped codes as empty lines, CR LF), a point
// whatever the process-wide separator and that separator unchanged afterwards,
// entries in code order, truncation on create and Reset, what it writes reads
// back; and the TColor to colour-number table used on the way out.
#include "dxf/dxf_primitives.h"
#include "platform/convert.h"
#include "platform/stream.h"

#include <QDir>
#include <cmath>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "support/test_support.h"
#include "tests/text_printers.h"

using namespace faroven;

namespace {

// The bytes the writer produces for what f writes.
QByteArray written(const std::function<void(TDXFWrite&)>& f) {
    TMemoryStream stream;
    {
        TDXFWrite w(stream);
        f(w);
    }
    return stream.ToByteArray();
}

QByteArray group(uint16_t code, const TVariant& value) {
    return written([&](TDXFWrite& w) { w.WriteGroup(code, value); });
}

class EitherSeparator : public ::testing::TestWithParam<char> {
protected:
    void SetUp() override { SetDecimalSeparator(QChar(GetParam())); }
    void TearDown() override { EXPECT_EQ(DecimalSeparator(), QChar(GetParam())) << "separator not restored"; }
};

INSTANTIATE_TEST_SUITE_P(Locales, EitherSeparator, ::testing::Values('.', ','),
                         [](const auto& info) { return info.param == '.' ? "point" : "comma"; });

// ---------------------------------------------------------------- groups

TEST_P(EitherSeparator, GroupBytes) {
    EXPECT_EQ(group(0, "SECTION"), QByteArray("  0\r\nSECTION\r\n"));
    EXPECT_EQ(group(10, 12.5), QByteArray(" 10\r\n12.500000\r\n"));
    EXPECT_EQ(group(20, -0.1), QByteArray(" 20\r\n-0.100000\r\n"));
    EXPECT_EQ(group(40, 3), QByteArray(" 40\r\n3.000000\r\n"));
    EXPECT_EQ(group(70, 70), QByteArray(" 70\r\n    70\r\n"));
    EXPECT_EQ(group(62, -5), QByteArray(" 62\r\n    -5\r\n"));
    EXPECT_EQ(group(170, 1234567), QByteArray("170\r\n1234567\r\n"));
    EXPECT_EQ(group(999, "comment"), QByteArray("999\r\ncomment\r\n"));
    EXPECT_EQ(group(1010, 1.0), QByteArray("1010\r\n1.000000\r\n"));
    EXPECT_EQ(group(1071, 9), QByteArray("1071\r\n     9\r\n"));
    EXPECT_EQ(group(1000, " padded "), QByteArray("1000\r\n padded \r\n"));
    EXPECT_EQ(group(1, QString::fromUtf8("caf\u00e9 \u20ac")), QByteArray("  1\r\ncaf\xe9 \x80\r\n"));
}

TEST(WriteGroup, UntypedCodesWriteAnEmptyValue) {
    EXPECT_EQ(group(100, "AcDbLine"), QByteArray("100\r\n\r\n"));
    EXPECT_EQ(group(330, "1F"), QByteArray("330\r\n\r\n"));
    EXPECT_EQ(group(90, 3), QByteArray(" 90\r\n\r\n"));
    EXPECT_EQ(group(1256, "x"), QByteArray("1256\r\n\r\n"));
}

TEST(WriteGroup, TextCutTo255Characters) {
    const QString longText = QString(200, u'a') + QString(100, u'b');
    const QByteArray out = group(1, longText);
    EXPECT_EQ(out, "  1\r\n" + QByteArray(200, 'a') + QByteArray(55, 'b') + "\r\n");
    EXPECT_EQ(group(1005, QString(300, u'z')).size(), 6 + 255 + 2);
}

TEST(WriteGroup, LineBreaksInTextBecomeBlanks) {
    EXPECT_EQ(group(1, "two\r\nlines"), QByteArray("  1\r\ntwo  lines\r\n"));
}

TEST(WriteGroup, ValuesOfAnotherKindAreConverted) {
    EXPECT_EQ(group(70, 2.5), QByteArray(" 70\r\n     2\r\n"));  // half to even
    EXPECT_EQ(group(70, 3.5), QByteArray(" 70\r\n     4\r\n"));
    EXPECT_EQ(group(70, " 8 "), QByteArray(" 70\r\n     8\r\n"));
    EXPECT_EQ(group(10, "12,5"), QByteArray(" 10\r\n12.500000\r\n"));
    EXPECT_EQ(group(10, "1e3"), QByteArray(" 10\r\n1000.000000\r\n"));
    EXPECT_EQ(group(1, 7), QByteArray("  1\r\n7\r\n"));
    EXPECT_EQ(group(1, 1.5), QByteArray("  1\r\n1.5\r\n"));
    EXPECT_EQ(group(10, TVariant()), QByteArray(" 10\r\n0.000000\r\n"));
    EXPECT_EQ(group(1, TVariant()), QByteArray("  1\r\n\r\n"));
}

TEST_P(EitherSeparator, UnwritableValueRaisesAndWritesNothing) {
    TMemoryStream stream;
    TDXFWrite w(stream);
    w.WriteGroup(0, "LINE");
    EXPECT_THROW(w.WriteGroup(10, "abc"), EConvertError);
    EXPECT_THROW(w.WriteGroup(10, std::nan("")), EConvertError);
    EXPECT_THROW(w.WriteGroup(70, int64_t(1) << 33), EConvertError);
    EXPECT_THROW(w.WriteGroup(70, "1.5"), EConvertError);
    w.Flush();
    EXPECT_EQ(stream.ToByteArray(), QByteArray("  0\r\nLINE\r\n"));
}

// ---------------------------------------------------------------- sections and entries

TEST(Sections, BracketBytes) {
    EXPECT_EQ(written([](TDXFWrite& w) { w.BeginSection(scHeader); }), QByteArray("  0\r\nSECTION\r\n  2\r\nHEADER\r\n"));
    EXPECT_EQ(written([](TDXFWrite& w) { w.BeginSection(scTables); }), QByteArray("  0\r\nSECTION\r\n  2\r\nTABLES\r\n"));
    EXPECT_EQ(written([](TDXFWrite& w) { w.BeginSection(scBlocks); }), QByteArray("  0\r\nSECTION\r\n  2\r\nBLOCKS\r\n"));
    EXPECT_EQ(written([](TDXFWrite& w) { w.BeginSection(scEntities); }),
              QByteArray("  0\r\nSECTION\r\n  2\r\nENTITIES\r\n"));
    EXPECT_EQ(written([](TDXFWrite& w) { w.BeginSection(scClasses); }), QByteArray("  0\r\nSECTION\r\n  2\r\nCLASSES\r\n"));
    EXPECT_EQ(written([](TDXFWrite& w) { w.BeginSection(scUnknow); }), QByteArray("  0\r\nSECTION\r\n"));
    EXPECT_EQ(written([](TDXFWrite& w) { w.EndSection(scTables); }), QByteArray("  0\r\nENDSEC\r\n"));
}

TEST(Sections, NoEofWrittenByItself) {
    const QByteArray out = written([](TDXFWrite& w) {
        w.BeginSection(scEntities);
        w.EndSection(scEntities);
    });
    EXPECT_TRUE(out.endsWith("ENDSEC\r\n"));
}

TEST(WriteAnEntry, SlotsInCodeOrder) {
    TGroupTable e;
    e.SetValue(1040, 2.5);
    e.SetValue(40, 1.25);
    e.SetValue(1000, "x");
    e.SetValue(8, "0");
    e.SetValue(0, "CIRCLE");
    e.SetValue(62, 3);
    e.SetValue(1256, "last slot, never written");
    const QByteArray out = written([&](TDXFWrite& w) { w.WriteAnEntry(e); });
    EXPECT_EQ(out, QByteArray("  0\r\nCIRCLE\r\n  8\r\n0\r\n 40\r\n1.250000\r\n 62\r\n     3\r\n"
                              "1000\r\nx\r\n1040\r\n2.500000\r\n"));
    EXPECT_EQ(written([](TDXFWrite& w) { w.WriteAnEntry(TGroupTable()); }), QByteArray());
}

// ---------------------------------------------------------------- files

TEST(Files, CreateTruncatesResetStartsOver) {
    QTemporaryDir dir;
    const QString name = dir.filePath(QStringLiteral("out.dxf"));
    {
        QFile old(name);
        ASSERT_TRUE(old.open(QIODevice::WriteOnly));
        old.write("old content that must go\r\n");
    }
    {
        TDXFWrite w(name);
        w.WriteGroup(999, "first");
        w.Flush();
        w.Reset();
        w.WriteGroup(999, "second");
    }
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), QByteArray("999\r\nsecond\r\n"));
}

TEST(Files, ResetOnAStreamCutsBackToTheStart) {
    TMemoryStream stream;
    stream.Write("keep", 4);
    {
        TDXFWrite w(stream);
        w.WriteGroup(0, "A");
        w.Flush();
        w.Reset();
        w.WriteGroup(0, "B");
    }
    EXPECT_EQ(stream.ToByteArray(), QByteArray("keep  0\r\nB\r\n"));
}

TEST(Files, CannotCreateRaisesNamingTheFile) {
    const QString name = QDir::temp().filePath(QStringLiteral("faroven-no-such-dir/out.dxf"));
    EXPECT_TRUE(test::RaisesWith<EInOutError>([&] { TDXFWrite w(name); }, name));
}

TEST_P(EitherSeparator, WhatIsWrittenReadsBack) {
    TGroupTable line;
    line.SetValue(0, "LINE");
    line.SetValue(8, "WALLS");
    line.SetValue(10, -1.5);
    line.SetValue(20, 1e6);
    line.SetValue(11, 0.000001);
    line.SetValue(62, 256);
    line.SetValue(1001, "APP");
    line.SetValue(1040, 0.125);
    line.SetValue(1070, -7);
    const QByteArray out = written([&](TDXFWrite& w) {
        w.BeginSection(scEntities);
        w.WriteAnEntry(line);
        w.EndSection(scEntities);
        w.WriteGroup(0, "EOF");
    });
    auto r = TDXFRead::FromBytes(out);
    EXPECT_EQ(r->CurrentSection(), scEntities);
    TGroupTable back;
    r->ReadAnEntry(0, back);
    EXPECT_EQ(r->CurrentGroupCode(), 0);
    EXPECT_EQ(r->CurrentValue(), TVariant("ENDSEC"));
    for (int code : {0, 8, 10, 20, 11, 62, 1001, 1040, 1070}) EXPECT_EQ(back.Value(code), line.Value(code)) << code;
}

// ---------------------------------------------------------------- colour numbers

TEST(ColorToDxfColorNumber, NamedColours) {
    EXPECT_EQ(ColorToDxfColorNumber(clBlack), 7);
    EXPECT_EQ(ColorToDxfColorNumber(clWhite), 7);
    EXPECT_EQ(ColorToDxfColorNumber(clRed), 1);
    EXPECT_EQ(ColorToDxfColorNumber(clYellow), 2);
    EXPECT_EQ(ColorToDxfColorNumber(clLime), 3);
    EXPECT_EQ(ColorToDxfColorNumber(clAqua), 4);
    EXPECT_EQ(ColorToDxfColorNumber(clBlue), 5);
    EXPECT_EQ(ColorToDxfColorNumber(clFuchsia), 6);
    EXPECT_EQ(ColorToDxfColorNumber(clGray), 8);
    EXPECT_EQ(ColorToDxfColorNumber(clSilver), 9);
}

TEST(ColorToDxfColorNumber, EverythingElseIsSeven) {
    for (TColor c : {clGreen, clMaroon, clNavy, clOlive, clPurple, clTeal, RGB(254, 0, 0), RGB(128, 128, 129),
                     clMoneyGreen, clNone})
        EXPECT_EQ(ColorToDxfColorNumber(c), 7) << std::hex << c;
    // System colours count by their RGB value.
    EXPECT_EQ(ColorToDxfColorNumber(clBtnShadow), 8);
    EXPECT_EQ(ColorToDxfColorNumber(clWindowText), 7);
}

}  // namespace
