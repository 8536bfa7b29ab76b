// Number text under the process-wide decimal separator (accepts exactly one
// syntax, names the bad text, restores the separator), variant kinds and
// conversions, and text files that split lines at CR, LF and CR LF and write CR LF.
#include "platform/convert.h"
#include "platform/stream.h"
#include "platform/textfile.h"
#include "platform/variant.h"

#include <QDir>
#include <QFile>
#include <QLocale>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "support/test_support.h"
#include "tests/text_printers.h"

using namespace faroven;

namespace {

QString convertMessage(const std::function<void()>& f) { return test::MessageOf<EConvertError>(f); }

// ---------------------------------------------------------------- separator

TEST(DecimalSeparator, StartsFromTheSystemLocale) {
    // First test of the suite: nothing has set the separator yet.
    EXPECT_EQ(DecimalSeparator(), QLocale::system().decimalPoint().at(0));
}

TEST(DecimalSeparator, GuardRestoresOnException) {
    SetDecimalSeparator(u'.');
    try {
        const DecimalSeparatorGuard guard(u',');
        EXPECT_EQ(DecimalSeparator(), u',');
        StrToFloat(QStringLiteral("x"));
    } catch (const EConvertError&) {
    }
    EXPECT_EQ(DecimalSeparator(), u'.');
}

// ---------------------------------------------------------------- reals

struct FloatCase {
    const char* text;
    char separator;
    double value;
};

class StrToFloatAccepts : public ::testing::TestWithParam<FloatCase> {};

TEST_P(StrToFloatAccepts, Value) {
    const DecimalSeparatorGuard guard(QChar(GetParam().separator));
    EXPECT_DOUBLE_EQ(StrToFloat(QString::fromLatin1(GetParam().text)), GetParam().value) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(Syntax, StrToFloatAccepts,
                         ::testing::Values(FloatCase{"1.5", '.', 1.5}, FloatCase{"1,5", ',', 1.5},
                                           FloatCase{"  -12.25\t", '.', -12.25}, FloatCase{"+3", '.', 3},
                                           FloatCase{".5", '.', 0.5}, FloatCase{"5.", '.', 5},
                                           FloatCase{"1e3", '.', 1000}, FloatCase{"1E-2", '.', 0.01},
                                           FloatCase{"-2,5e+1", ',', -25}, FloatCase{"1e+20", ',', 1e20},
                                           FloatCase{"1e-400", '.', 0.0}));

class StrToFloatRejects : public ::testing::TestWithParam<std::pair<const char*, char>> {};

TEST_P(StrToFloatRejects, WithTheTextInTheMessage) {
    const DecimalSeparatorGuard guard(QChar(GetParam().second));
    const QString text = QString::fromLatin1(GetParam().first);
    EXPECT_EQ(convertMessage([&] { StrToFloat(text); }),
              QStringLiteral("'%1' is not a valid floating point value").arg(text));
    double v = 7;
    EXPECT_FALSE(TryStrToFloat(text, v));
    EXPECT_EQ(v, 7);
}

INSTANTIATE_TEST_SUITE_P(Syntax, StrToFloatRejects,
                         ::testing::Values(std::pair{"1.2.3", '.'}, std::pair{"1.5", ','}, std::pair{"1,5", '.'},
                                           std::pair{"", '.'}, std::pair{".", '.'}, std::pair{"e5", '.'},
                                           std::pair{"1e", '.'}, std::pair{"1e+", '.'}, std::pair{"1 000", '.'},
                                           std::pair{"inf", '.'}, std::pair{"nan", '.'}, std::pair{"1e999", '.'},
                                           std::pair{"0x10", '.'}, std::pair{"--1", '.'}, std::pair{"12abc", '.'}));

// ---------------------------------------------------------------- integers

TEST(StrToInt, AcceptsBlanksAndSign) {
    EXPECT_EQ(StrToInt(QStringLiteral("    70")), 70);
    EXPECT_EQ(StrToInt(QStringLiteral(" +5 ")), 5);
    EXPECT_EQ(StrToInt(QStringLiteral("-0")), 0);
    EXPECT_EQ(StrToInt(QStringLiteral("2147483647")), 2147483647);
    EXPECT_EQ(StrToInt(QStringLiteral("-2147483648")), -2147483647 - 1);
    EXPECT_EQ(StrToInt64(QStringLiteral("-9223372036854775808")), INT64_MIN);
}

TEST(StrToInt, RejectsWithTheTextInTheMessage) {
    for (const char* text : {"2147483648", "-2147483649", "1.0", "", "-", "0x10", "7 7", "1e3"}) {
        const QString t = QString::fromLatin1(text);
        EXPECT_EQ(convertMessage([&] { StrToInt(t); }), QStringLiteral("'%1' is not a valid integer value").arg(t));
    }
    EXPECT_EQ(convertMessage([] { StrToInt64(QStringLiteral("9223372036854775808")); }),
              QStringLiteral("'9223372036854775808' is not a valid integer value"));
}

TEST(Trim, RemovesBlanksAndControlsOnly) {
    EXPECT_EQ(Trim(QStringLiteral("\t\x01 a b \r\x1f")), QStringLiteral("a b"));
    EXPECT_EQ(Trim(QStringLiteral(" \t ")), QString());
    EXPECT_EQ(Trim(QString::fromUtf8("\u00a0x\u00a0")), QString::fromUtf8("\u00a0x\u00a0"));
}

// ---------------------------------------------------------------- formatting

TEST(FloatToStr, ShortestFifteenDigitsWithTheSeparator) {
    const DecimalSeparatorGuard guard(u'.');
    EXPECT_EQ(FloatToStr(0.1 + 0.2), QStringLiteral("0.3"));
    EXPECT_EQ(FloatToStr(123456.789), QStringLiteral("123456.789"));
    EXPECT_EQ(FloatToStr(-2.5), QStringLiteral("-2.5"));
    EXPECT_EQ(FloatToStr(100), QStringLiteral("100"));
    EXPECT_EQ(FloatToStr(0.00001), QStringLiteral("0.00001"));
    EXPECT_EQ(FloatToStr(1.5e-7), QStringLiteral("1.5E-7"));
    EXPECT_EQ(FloatToStr(1e15), QStringLiteral("1E15"));
    EXPECT_EQ(FloatToStr(999999999999999.0), QStringLiteral("999999999999999"));
    EXPECT_EQ(FloatToStr(0.0), QStringLiteral("0"));
    SetDecimalSeparator(u',');
    EXPECT_EQ(FloatToStr(-2.5), QStringLiteral("-2,5"));
    EXPECT_EQ(FloatToStr(1.25e-9), QStringLiteral("1,25E-9"));
}

TEST(FormatFloatFixed, PrintfStyleWithTheSeparator) {
    const DecimalSeparatorGuard guard(u'.');
    EXPECT_EQ(FormatFloatFixed(12.5, 6), QStringLiteral("12.500000"));
    EXPECT_EQ(FormatFloatFixed(-0.0000004, 6), QStringLiteral("-0.000000"));
    EXPECT_EQ(FormatFloatFixed(0.125, 2), QStringLiteral("0.12"));  // exact ties go to even
    EXPECT_EQ(FormatFloatFixed(0.375, 2), QStringLiteral("0.38"));
    EXPECT_EQ(FormatFloatFixed(1e20, 1), QStringLiteral("100000000000000000000.0"));
    SetDecimalSeparator(u',');
    EXPECT_EQ(FormatFloatFixed(12.5, 6), QStringLiteral("12,500000"));
    EXPECT_EQ(FormatIntWidth(70, 6), QStringLiteral("    70"));
    EXPECT_EQ(FormatIntWidth(-5, 3), QStringLiteral(" -5"));
    EXPECT_EQ(FormatIntWidth(1234567, 6), QStringLiteral("1234567"));
}

// ---------------------------------------------------------------- variant

TEST(Variant, KindsAndConversions) {
    const DecimalSeparatorGuard guard(u'.');
    EXPECT_EQ(VarType(TVariant()), varEmpty);
    EXPECT_TRUE(VarIsEmpty(TVariant()));
    EXPECT_EQ(TVariant(70).VarType(), varInteger);
    EXPECT_EQ(TVariant(uint16_t(7)).VarType(), varInteger);
    EXPECT_EQ(TVariant(12.5).VarType(), varDouble);
    EXPECT_EQ(TVariant(1.5f).VarType(), varDouble);
    EXPECT_EQ(TVariant("LINE").VarType(), varString);
    EXPECT_EQ(TVariant().AsInteger(), 0);
    EXPECT_EQ(TVariant().AsString(), QString());
    EXPECT_EQ(TVariant(2.5).AsInteger(), 2);  // half to even
    EXPECT_EQ(TVariant(3.5).AsInteger(), 4);
    EXPECT_EQ(TVariant(7).AsDouble(), 7.0);
    EXPECT_EQ(TVariant(12.5).AsString(), QStringLiteral("12.5"));
    EXPECT_EQ(TVariant(" 42").AsInteger(), 42);
    EXPECT_EQ(TVariant("1.25").AsDouble(), 1.25);
    EXPECT_THROW(TVariant("x1").AsDouble(), EConvertError);
    EXPECT_THROW(TVariant(1e300).AsInteger(), EConvertError);
}

TEST(Variant, Equality) {
    EXPECT_EQ(TVariant(), TVariant());
    EXPECT_NE(TVariant(), TVariant(0));
    EXPECT_NE(TVariant(), TVariant(""));
    EXPECT_EQ(TVariant(2), TVariant(2.0));
    EXPECT_NE(TVariant(2), TVariant("2"));
    EXPECT_EQ(TVariant("SECTION"), TVariant(QStringLiteral("SECTION")));
    EXPECT_NE(TVariant("SECTION"), TVariant("section"));
}

// ---------------------------------------------------------------- text files

QList<QByteArray> allLines(TTextFileReader& reader) {
    QList<QByteArray> lines;
    while (!reader.Eof()) lines.append(reader.ReadLine());
    return lines;
}

TEST(TextFileReader, SplitsAtCrLfAndCrLf) {
    TTextFileReader reader(QByteArray("a\r\nb\nc\rd\r\r\ne"), QStringLiteral("mem"));
    EXPECT_EQ(allLines(reader), (QList<QByteArray>{"a", "b", "c", "d", "", "e"}));
    EXPECT_EQ(reader.LineNumber(), 6);
    EXPECT_EQ(reader.ReadLine(), QByteArray());  // at the end: empty, no error
    EXPECT_EQ(reader.LineNumber(), 6);
}

TEST(TextFileReader, FinalLineEndAddsNoLine) {
    TTextFileReader reader(QByteArray("a\r\n\r\n"), QStringLiteral("mem"));
    EXPECT_EQ(allLines(reader), (QList<QByteArray>{"a", ""}));
    TTextFileReader empty(QByteArray(), QStringLiteral("mem"));
    EXPECT_TRUE(empty.Eof());
}

TEST(TextFileReader, CtrlZEndsTheText) {
    TTextFileReader reader(QByteArray("a\r\nb\x1a\r\nc\r\n"), QStringLiteral("mem"));
    EXPECT_EQ(allLines(reader), (QList<QByteArray>{"a", "b"}));
}

TEST(TextFileReader, CrLfSplitAcrossStreamChunks) {
    // The stream is read in 64 KiB pieces: put the CR as the last byte of the
    // first piece and the LF as the first of the second.
    QByteArray text(65535, 'x');
    text += "\r\nsecond\rthird";
    auto stream = TMemoryStream::FromBytes(text);
    TTextFileReader reader(*stream, QStringLiteral("stream"));
    const auto lines = allLines(reader);
    ASSERT_EQ(lines.size(), 3);
    EXPECT_EQ(lines[0].size(), 65535);
    EXPECT_EQ(lines[1], QByteArray("second"));
    EXPECT_EQ(lines[2], QByteArray("third"));
    reader.Reset();
    EXPECT_EQ(allLines(reader).size(), 3);
}

TEST(TextFileReader, OverlongLineRaisesNamingTheFile) {
    TTextFileReader reader(QByteArray("ok\n") + QByteArray(100, 'x') + "\n", QStringLiteral("big.dxf"));
    reader.SetMaxLineLength(64);
    EXPECT_EQ(reader.ReadLine(), QByteArray("ok"));
    EXPECT_EQ(test::MessageOf<EInOutError>([&] { reader.ReadLine(); }),
              QStringLiteral("Line 2 of \"big.dxf\" is longer than 64 bytes"));
}

TEST(TextFileReader, MissingFileRaisesNamingIt) {
    const QString name = QDir::temp().filePath(QStringLiteral("faroven-no-such-dir/none.txt"));
    EXPECT_TRUE(test::RaisesWith<EInOutError>([&] { TTextFileReader reader(name); }, name));
}

TEST(TextFileWriter, WritesCrLfAndRewrites) {
    QTemporaryDir dir;
    const QString name = dir.filePath(QStringLiteral("out.txt"));
    {
        TTextFileWriter writer(name);
        writer.WriteLine(QStringLiteral("caf\u00e9"));
        writer.Write(QByteArray("x"));
        writer.WriteLine();
        writer.Flush();
        writer.Rewrite();
        writer.WriteLine(QByteArray("again"));
    }
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), QByteArray("again\r\n"));

    TTextFileReader reader(name);
    EXPECT_EQ(reader.ReadLine(), QByteArray("again"));
    EXPECT_TRUE(reader.Eof());
}

TEST(TextFileWriter, Windows1252Bytes) {
    TMemoryStream stream;
    {
        TTextFileWriter writer(stream, QStringLiteral("mem"));
        writer.WriteLine(QString::fromUtf8("caf\u00e9 \u20ac"));
    }
    EXPECT_EQ(stream.ToByteArray(), QByteArray("caf\xe9 \x80\r\n"));
}

TEST(TextFileWriter, CannotCreateRaisesNamingTheFile) {
    const QString name = QDir::temp().filePath(QStringLiteral("faroven-no-such-dir/out.txt"));
    EXPECT_TRUE(test::RaisesWith<EInOutError>([&] { TTextFileWriter writer(name); }, name));
}

}  // namespace
