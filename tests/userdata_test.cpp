// User data: keys stay unique through AddKeyandValue, lookups find the first
// pair, order is kept, and the stream form keeps the length-mod-256 rule.
#include "cad/persistence/stream_io.h"
#include "cad/persistence/userdata.h"

#include <gtest/gtest.h>

using namespace faroven;

namespace {

TEST(UserData, AddingAKeyTwiceKeepsOnePair) {
    TUserData d;
    EXPECT_TRUE(d.AddKeyandValue("k", "1"));
    EXPECT_FALSE(d.AddKeyandValue("k", "2"));
    EXPECT_EQ(d.GetCount(), 1);
    EXPECT_EQ(d.GetValueByKey("k"), "1");
}

TEST(UserData, KeysAreCaseSensitive) {
    TUserData d;
    EXPECT_TRUE(d.AddKeyandValue("Key", "a"));
    EXPECT_TRUE(d.AddKeyandValue("key", "b"));
    EXPECT_EQ(d.GetValueByKey("Key"), "a");
    EXPECT_EQ(d.GetValueByKey("key"), "b");
    EXPECT_EQ(d.GetValueByKey("KEY"), "");
}

TEST(UserData, DeletingTheMiddleKeepsTheOrder) {
    TUserData d;
    d.AddKeyandValue("a", "1");
    d.AddKeyandValue("b", "2");
    d.AddKeyandValue("c", "3");
    EXPECT_TRUE(d.DeleteRecordByKey("b"));
    EXPECT_FALSE(d.DeleteRecordByKey("b"));
    ASSERT_EQ(d.GetCount(), 2);
    EXPECT_EQ(d.GetKeyByNo(0), "a");
    EXPECT_EQ(d.GetKeyByNo(1), "c");
}

TEST(UserData, OutOfRangeIndexesAndMissingKeysReadEmpty) {
    TUserData d;
    d.AddKeyandValue("a", "");
    EXPECT_EQ(d.GetKeyByNo(-1), "");
    EXPECT_EQ(d.GetKeyByNo(d.GetCount()), "");
    EXPECT_EQ(d.GetValueByKey("a"), "");
    EXPECT_EQ(d.GetValueByKey("zz"), "");
    EXPECT_FALSE(d.ChangeValueByKey("zz", "x"));
}

TEST(UserData, RenameAndReplaceCanMakeDuplicatesAndLookupsFindTheFirst) {
    TUserData d;
    d.AddKeyandValue("a", "1");
    d.AddKeyandValue("b", "2");
    EXPECT_TRUE(d.ReNameKey("b", "a"));
    EXPECT_EQ(d.GetCount(), 2);
    EXPECT_EQ(d.GetValueByKey("a"), "1");
    EXPECT_TRUE(d.ChangeValueByKey("a", "x"));
    EXPECT_EQ(d.Records()[0].Value, "x");
    EXPECT_EQ(d.Records()[1].Value, "2");
    d.SetUserDataRecord({{"z", "9"}, {"z", "8"}});
    EXPECT_EQ(d.GetValueByKey("z"), "9");
    TUserData copy;
    copy.Assign(d);
    EXPECT_EQ(copy, d);
    d.ClearAll();
    EXPECT_EQ(d.GetCount(), 0);
    EXPECT_EQ(copy.GetCount(), 2);
}

TEST(UserDataStream, LayoutIsCountThenLengthPrefixedKeysAndValues) {
    TUserData d;
    d.AddKeyandValue("ab", "xyz");
    TMemoryStream s;
    d.SaveToStream(s);
    const QByteArray expected("\x01\x00\x00\x00" "\x02\x00\x00\x00" "ab" "\x03\x00\x00\x00" "xyz", 4 + 4 + 2 + 4 + 3);
    EXPECT_EQ(s.ToByteArray(), expected);
}

TEST(UserDataStream, LongTextComesBackCutToItsLengthModulo256) {
    TUserData d;
    const QString key(300, QChar('k'));
    d.AddKeyandValue(key, QString(255, QChar('v')));
    TMemoryStream s;
    d.SaveToStream(s);
    EXPECT_EQ(s.Size(), 4 + 4 + 44 + 4 + 255);
    s.SetPosition(0);
    TUserData back;
    back.LoadFromStream(s);
    EXPECT_EQ(back.GetKeyByNo(0), QString(44, QChar('k')));
    EXPECT_EQ(back.GetValueByKey(QString(44, QChar('k'))), QString(255, QChar('v')));
    EXPECT_EQ(s.Position(), s.Size());
}

TEST(UserDataStream, StoredDuplicateKeysAreDroppedOnReading) {
    TUserData d;
    d.SetUserDataRecord({{"k", "first"}, {"k", "second"}, {"m", "3"}});
    TMemoryStream s;
    d.SaveToStream(s);
    s.SetPosition(0);
    TUserData back;
    back.LoadFromStream(s);
    ASSERT_EQ(back.GetCount(), 2);
    EXPECT_EQ(back.GetValueByKey("k"), "first");
}

TEST(UserDataStream, TruncatedOrCorruptStreamsRaiseAndLeaveTheDataAlone) {
    TUserData d;
    d.AddKeyandValue("a", "1");
    d.AddKeyandValue("b", "2");
    TMemoryStream s;
    d.SaveToStream(s);
    s.SetSize(s.Size() - 1);
    s.SetPosition(0);
    TUserData target;
    target.AddKeyandValue("keep", "me");
    EXPECT_THROW(target.LoadFromStream(s), EReadError);
    EXPECT_EQ(target.GetCount(), 1);
    EXPECT_EQ(target.GetValueByKey("keep"), "me");

    TMemoryStream huge;
    WriteInt32(huge, 0x7FFFFFFF);  // a count no stream of this size can hold
    huge.SetPosition(0);
    EXPECT_THROW(target.LoadFromStream(huge), EReadError);
}

}  // namespace
