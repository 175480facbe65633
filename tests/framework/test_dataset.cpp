// The client dataset: cursor, editing, setters, calculated fields, loading and files.
#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTemporaryDir>

#include "framework/DataSet.h"
#include "framework/U_function.h"
#include "tests/framework/FakeDatabase.h"

namespace {

using qx::test::table;

std::unique_ptr<TClientDataSet> threeLines() {
    auto ds = std::make_unique<TClientDataSet>();
    ds->LoadFromResult(table({"K_ID", "S0", "SJ"}, {{std::string("K01"), std::int64_t(3), 10.0},
                                                   {std::string("K02"), std::int64_t(1), 20.5},
                                                   {std::string("K03"), std::int64_t(0), qx::db::Value{}}}));
    return ds;
}

TEST(FrameworkDataSet, LoadTakesColumnNamesAsFieldsAndStartsOnFirstRow) {
    auto ds = threeLines();
    EXPECT_EQ(ds->FieldCount(), 3);
    EXPECT_EQ(ds->FieldNames(), QStringList({"K_ID", "S0", "SJ"}));
    EXPECT_EQ(ds->RecordCount(), 3);
    EXPECT_EQ(ds->RecNo(), 1);
    EXPECT_FALSE(ds->Eof());
    EXPECT_EQ(ds->FieldByName("k_id")->AsString(), "K01");  // names ignore case
}

TEST(FrameworkDataSet, CursorWalksForwardAndBackward) {
    auto ds = threeLines();
    QStringList seen;
    for (ds->First(); !ds->Eof(); ds->Next()) seen << ds->FieldByName("K_ID")->AsString();
    EXPECT_EQ(seen, QStringList({"K01", "K02", "K03"}));
    EXPECT_TRUE(ds->Eof());
    EXPECT_EQ(ds->RecNo(), 3);
    ds->Last();
    ds->Prior();
    EXPECT_EQ(ds->FieldByName("K_ID")->AsString(), "K02");
    ds->Prior();
    ds->Prior();
    EXPECT_TRUE(ds->Bof());
    EXPECT_EQ(ds->RecNo(), 1);
}

TEST(FrameworkDataSet, EmptyDataSetIsEofAndBof) {
    TClientDataSet ds;
    ds.LoadFromResult(table({"A"}, {}));
    EXPECT_TRUE(ds.IsEmpty());
    EXPECT_TRUE(ds.Eof());
    EXPECT_TRUE(ds.Bof());
    EXPECT_EQ(ds.RecNo(), 0);
    EXPECT_EQ(ds.FieldCount(), 1);
}

TEST(FrameworkDataSet, LocateFindsByOneOrSeveralFields) {
    auto ds = threeLines();
    EXPECT_TRUE(ds->Locate("K_ID", "K03"));
    EXPECT_EQ(ds->RecNo(), 3);
    EXPECT_FALSE(ds->Locate("K_ID", "k02"));
    EXPECT_TRUE(ds->Locate("K_ID", "k02", loCaseInsensitive));
    EXPECT_EQ(ds->RecNo(), 2);
    EXPECT_TRUE(ds->Locate("K_ID;S0", QVariantList{"K01", 3}));
    EXPECT_EQ(ds->RecNo(), 1);
    EXPECT_TRUE(ds->Locate("K_ID", "K0", loPartialKey));
    EXPECT_EQ(ds->RecNo(), 1);
}

TEST(FrameworkDataSet, WritingNeedsEditState) {
    auto ds = threeLines();
    EXPECT_THROW(ds->FieldByName("S0")->SetAsInteger(5), EDatabaseError);
    ds->Edit();
    ds->FieldByName("S0")->SetAsInteger(5);
    EXPECT_EQ(ds->State(), dsEdit);
    ds->Post();
    EXPECT_EQ(ds->State(), dsBrowse);
    EXPECT_EQ(ds->FieldByName("S0")->AsInteger(), 5);
}

TEST(FrameworkDataSet, CancelRestoresTheRowAndDropsANewOne) {
    auto ds = threeLines();
    ds->Edit();
    ds->FieldByName("K_ID")->SetAsString("X");
    ds->Cancel();
    EXPECT_EQ(ds->FieldByName("K_ID")->AsString(), "K01");
    ds->Append();
    EXPECT_EQ(ds->RecordCount(), 4);
    ds->Cancel();
    EXPECT_EQ(ds->RecordCount(), 3);
}

TEST(FrameworkDataSet, AppendInsertAndDelete) {
    auto ds = threeLines();
    ds->Append();
    ds->FieldByName("K_ID")->SetAsString("K04");
    ds->Post();
    EXPECT_EQ(ds->RecNo(), 4);
    ds->First();
    ds->Next();
    ds->Insert();
    ds->FieldByName("K_ID")->SetAsString("K15");
    ds->Post();
    QStringList seen;
    for (ds->First(); !ds->Eof(); ds->Next()) seen << ds->FieldByName("K_ID")->AsString();
    EXPECT_EQ(seen, QStringList({"K01", "K15", "K02", "K03", "K04"}));
    ds->Locate("K_ID", "K02");
    ds->Delete();
    EXPECT_EQ(ds->RecordCount(), 4);
    EXPECT_EQ(ds->FieldByName("K_ID")->AsString(), "K03");  // the next row becomes current
}

TEST(FrameworkDataSet, MovingPostsAPendingEdit) {
    auto ds = threeLines();
    ds->Edit();
    ds->FieldByName("S0")->SetAsInteger(9);
    ds->Next();
    EXPECT_EQ(ds->State(), dsBrowse);
    ds->First();
    EXPECT_EQ(ds->FieldByName("S0")->AsInteger(), 9);
}

TEST(FrameworkDataSet, BeforePostMayRefuseTheRow) {
    auto ds = threeLines();
    ds->BeforePost = [](TDataSet* d) {
        if (d->FieldByName("S0")->AsInteger() < 0) Abort();
    };
    int posted = 0;
    ds->AfterPost = [&](TDataSet*) { ++posted; };
    ds->Edit();
    ds->FieldByName("S0")->SetAsInteger(-1);
    EXPECT_THROW(ds->Post(), EAbort);
    EXPECT_EQ(ds->State(), dsEdit);
    EXPECT_EQ(posted, 0);
    ds->FieldByName("S0")->SetAsInteger(1);
    ds->Post();
    EXPECT_EQ(posted, 1);
}

TEST(FrameworkDataSet, AfterScrollRunsOnEveryMove) {
    auto ds = threeLines();
    QStringList seen;
    ds->AfterScroll = [&](TDataSet* d) { seen << d->FieldByName("K_ID")->AsString(); };
    ds->Next();
    ds->Next();
    ds->First();
    EXPECT_EQ(seen, QStringList({"K02", "K03", "K01"}));
}

TEST(FrameworkDataSet, SetterRunsForTypedTextAndCanBeDetachedAndReattached) {
    auto ds = threeLines();
    int calls = 0;
    TFieldSetTextEvent doubler = [&](TField* f, const AnsiString& t) {
        ++calls;
        f->SetAsInteger(t.toInt() * 2);
    };
    TField* s0 = ds->FieldByName("S0");
    s0->OnSetText = doubler;
    ds->Edit();
    s0->SetText("4");
    EXPECT_EQ(s0->AsInteger(), 8);
    s0->OnSetText = nullptr;  // detached: typed text is stored as it is
    s0->SetText("4");
    EXPECT_EQ(s0->AsInteger(), 4);
    s0->OnSetText = doubler;  // attached again
    s0->SetText("5");
    EXPECT_EQ(s0->AsInteger(), 10);
    EXPECT_EQ(calls, 2);
}

TEST(FrameworkDataSet, SetterMayDetachItselfWhileRunning) {
    auto ds = threeLines();
    TField* s0 = ds->FieldByName("S0");
    TField* sj = ds->FieldByName("SJ");
    auto setter = std::make_shared<TFieldSetTextEvent>();
    *setter = [&, setter](TField* f, const AnsiString& t) {
        s0->OnSetText = nullptr;
        sj->OnSetText = nullptr;
        f->SetAsString(t);
        sj->SetText("7");  // would recurse without the detach
        s0->OnSetText = *setter;
        sj->OnSetText = *setter;
    };
    s0->OnSetText = *setter;
    sj->OnSetText = *setter;
    ds->Edit();
    s0->SetText("2");
    EXPECT_EQ(s0->AsInteger(), 2);
    EXPECT_EQ(sj->AsFloat(), 7);
    EXPECT_TRUE(bool(s0->OnSetText));
}

TEST(FrameworkDataSet, CalculatedFieldsFollowTheirSources) {
    auto ds = threeLines();
    ds->OnCalcFields = [](TDataSet* d) {
        d->FieldByName("AMOUNT")->SetAsFloat(d->FieldByName("S0")->AsInteger() * d->FieldByName("SJ")->AsFloat());
    };
    ds->AddField("AMOUNT", ftFloat, 0, "金额", fkCalculated);
    EXPECT_DOUBLE_EQ(ds->FieldByName("AMOUNT")->AsFloat(), 30);
    ds->Next();
    EXPECT_DOUBLE_EQ(ds->FieldByName("AMOUNT")->AsFloat(), 20.5);
    ds->Edit();
    ds->FieldByName("S0")->SetAsInteger(4);
    EXPECT_DOUBLE_EQ(ds->FieldByName("AMOUNT")->AsFloat(), 82);
}

TEST(FrameworkDataSet, ValuesConvertToTheFieldType) {
    TClientDataSet ds;
    ds.AddField("Q", ftInteger);
    ds.AddField("P", ftFloat);
    ds.AddField("D", ftDateTime);
    ds.AddField("T", ftString, 10);
    ds.CreateDataSet();
    ds.Append();
    ds.FieldByName("Q")->SetAsString("12");
    ds.FieldByName("P")->SetAsString("2.5");
    ds.FieldByName("D")->SetAsString("2026-03-01");
    ds.FieldByName("T")->SetAsFloat(45);
    EXPECT_THROW(ds.FieldByName("Q")->SetAsString("abc"), EDatabaseError);
    ds.Post();
    EXPECT_EQ(ds.FieldByName("Q")->AsInteger(), 12);
    EXPECT_DOUBLE_EQ(ds.FieldByName("P")->AsFloat(), 2.5);
    EXPECT_EQ(ds.FieldByName("D")->AsDateTime().date(), QDate(2026, 3, 1));
    EXPECT_EQ(ds.FieldByName("D")->AsString(), "2026-03-01");
    EXPECT_EQ(ds.FieldByName("T")->AsString(), "45");
    ds.FieldByName("P")->DisplayFormat = "0.00";
    EXPECT_EQ(ds.FieldByName("P")->DisplayText(), "2.50");
}

TEST(FrameworkDataSet, NullsReadAsEmptyOrZero) {
    auto ds = threeLines();
    ds->Last();
    EXPECT_TRUE(ds->FieldByName("SJ")->IsNull());
    EXPECT_EQ(ds->FieldByName("SJ")->AsString(), "");
    EXPECT_EQ(ds->FieldByName("SJ")->AsFloat(), 0);
}

TEST(FrameworkDataSet, UnknownFieldIsAnError) {
    auto ds = threeLines();
    EXPECT_EQ(ds->FindField("NOPE"), nullptr);
    EXPECT_THROW(ds->FieldByName("NOPE"), EDatabaseError);
}

TEST(FrameworkDataSet, DisabledControlsHearOneResetAtTheEnd) {
    auto ds = threeLines();
    QSignalSpy rows(ds.get(), &TClientDataSet::rowChanged);
    QSignalSpy resets(ds.get(), &TClientDataSet::dataReset);
    ds->DisableControls();
    for (ds->First(); !ds->Eof(); ds->Next()) {
        ds->Edit();
        ds->FieldByName("S0")->SetAsInteger(1);
        ds->Post();
    }
    EXPECT_EQ(rows.count(), 0);
    EXPECT_EQ(resets.count(), 0);
    ds->EnableControls();
    EXPECT_EQ(resets.count(), 1);
    EXPECT_TRUE(!ds->ControlsDisabled());
}

TEST(FrameworkDataSet, SavesAndLoadsALocalFile) {
    QTemporaryDir dir;
    auto ds = threeLines();
    ds->FieldByName("SJ")->DisplayLabel = "进货价";
    const QString file = dir.filePath("lines.json");
    ds->SaveToFile(file);
    TClientDataSet back;
    back.LoadFromFile(file);
    EXPECT_EQ(back.FieldNames(), ds->FieldNames());
    EXPECT_EQ(back.FieldByName("SJ")->DisplayLabel, "进货价");
    EXPECT_EQ(back.RecordCount(), 3);
    back.Next();
    EXPECT_EQ(back.FieldByName("K_ID")->AsString(), "K02");
    EXPECT_DOUBLE_EQ(back.FieldByName("SJ")->AsFloat(), 20.5);
    back.Next();
    EXPECT_TRUE(back.FieldByName("SJ")->IsNull());
}

TEST(FrameworkDataSet, SuspendedSettersComeBackAfterTheScope) {
    auto ds = threeLines();
    QStringList typed;
    ds->FieldByName("S0")->OnSetText = [&](TField* f, const AnsiString& t) {
        typed << t;
        f->SetAsString(t);
    };
    ds->Edit();
    {
        ScopedSetTextSuspension suspended(ds.get());
        ds->FieldByName("S0")->SetText("4");
    }
    ds->FieldByName("S0")->SetText("6");
    EXPECT_EQ(typed, QStringList{"6"});
    EXPECT_EQ(ds->FieldByName("S0")->AsInteger(), 6);
}

TEST(FrameworkDataSet, FrozenControlsThawAlsoWhenTheScopeThrows) {
    auto ds = threeLines();
    try {
        ScopedDisableControls frozen(ds.get());
        EXPECT_TRUE(ds->ControlsDisabled());
        throw std::runtime_error("refused");
    } catch (const std::runtime_error&) {
    }
    EXPECT_FALSE(ds->ControlsDisabled());
}

TEST(FrameworkDataSet, SortKeepsTheCurrentRecord) {
    auto ds = threeLines();
    ds->Locate("K_ID", "K02");
    ds->SortBy("SJ", false);
    EXPECT_EQ(ds->FieldByName("K_ID")->AsString(), "K02");
    ds->First();
    EXPECT_EQ(ds->FieldByName("K_ID")->AsString(), "K02");
}

}  // namespace
