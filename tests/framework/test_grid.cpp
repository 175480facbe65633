// The data grid: columns, two-row titles, footers, cell hooks, editing and export.
#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QHeaderView>
#include <QTemporaryDir>
#include <QLineEdit>
#include <QPainter>
#include <QTest>

#include "framework/DBGridEh.h"
#include "framework/Frm_Base.h"
#include "framework/GridExport.h"
#include "framework/Screenshot.h"
#include "framework/U_function.h"
#include "framework/U_glo.h"
#include "tests/framework/FakeDatabase.h"

namespace {

using qx::db::Value;
using qx::test::table;

std::string s(const char* t) { return t; }

class FrameworkGridTest : public ::testing::Test {
protected:
    void SetUp() override {
        ResetGlobals();
        ds.LoadFromResult(table({"K_ID", "COL_NAME", "S0", "S1", "S2", "STOT", "SMONEY"},
                                {{s("K01"), s("红色"), std::int64_t(3), std::int64_t(2), std::int64_t(0), std::int64_t(5), 50.0},
                                 {s("K01"), s("黑色"), std::int64_t(1), std::int64_t(0), std::int64_t(4), std::int64_t(5), 45.25},
                                 {s("K02"), s("红色"), std::int64_t(0), std::int64_t(6), std::int64_t(0), std::int64_t(6), 60.0}}));
        grid.SetDataSet(&ds);
        grid.resize(700, 300);
    }
    void TearDown() override { ResetGlobals(); }
    TClientDataSet ds;
    TDBGridEh grid;
};

TEST_F(FrameworkGridTest, ColumnsComeFromTheFields) {
    EXPECT_EQ(grid.ColumnCount(), 7);
    EXPECT_EQ(grid.Columns(0)->FieldName, "K_ID");
    EXPECT_EQ(grid.ColumnByField("smoney")->FieldName, "SMONEY");
    EXPECT_EQ(grid.objectName(), "DBGridEh");
    EXPECT_EQ(grid.DisplayedRows().size(), 3);
    EXPECT_EQ(grid.DisplayedRows()[1], QStringList({"K01", "黑色", "1", "0", "4", "5", "45.25"}));
}

TEST_F(FrameworkGridTest, FootersSumTheirColumns) {
    grid.ColumnByField("STOT")->Footer.ValueType = fvtSum;
    TColumnEh* money = grid.ColumnByField("SMONEY");
    money->Footer.ValueType = fvtSum;
    money->Footer.DisplayFormat = "0.00";
    grid.ColumnsChanged();
    EXPECT_TRUE(grid.FooterRowVisible());
    EXPECT_DOUBLE_EQ(grid.GetSumValue("STOT"), 16);
    EXPECT_DOUBLE_EQ(grid.GetSumValue("SMONEY"), 155.25);
    EXPECT_DOUBLE_EQ(grid.GetSumValue("NOPE"), 0);
    EXPECT_EQ(grid.FooterTexts(), QStringList({"", "", "", "", "", "16", "155.25"}));
    // Footers follow edits.
    ds.Last();
    ds.Edit();
    ds.FieldByName("SMONEY")->SetAsFloat(10);
    ds.Post();
    EXPECT_EQ(grid.FooterTexts().last(), "105.25");
}

// Amounts with cents add up with binary noise (0.1 + 0.2 is 0.30000000000000004); the footer
// shows the sum a clerk would write, not the noise.
TEST_F(FrameworkGridTest, AFooterSumOfCentsShowsNoBinaryNoise) {
    TClientDataSet cents;
    cents.LoadFromResult(table({"K_ID", "SMONEY"}, {{s("K"), 0.1}, {s("K"), 0.2}, {s("K"), 217478.1}}));
    TDBGridEh g;
    g.SetDataSet(&cents);
    g.ColumnByField("SMONEY")->Footer.ValueType = fvtSum;
    g.ColumnsChanged();
    EXPECT_EQ(g.GetSumValue("SMONEY"), 217478.4) << "exactly the nearest double, not 217478.40000000002";
    EXPECT_EQ(g.FooterTexts().last(), "217478.4");
    cents.Last();
    cents.Delete();
    EXPECT_EQ(g.GetSumValue("SMONEY"), 0.3);
}

TEST_F(FrameworkGridTest, DisplayFormatShapesNumbers) {
    grid.ColumnByField("SMONEY")->DisplayFormat = "0.00";
    grid.ColumnsChanged();
    EXPECT_EQ(grid.DisplayedRows()[0].last(), "50.00");
    grid.ColumnByField("SMONEY")->DisplayFormat = "#,##0.0";
    ds.First();
    ds.Edit();
    ds.FieldByName("SMONEY")->SetAsFloat(12345.67);
    ds.Post();
    EXPECT_EQ(grid.DisplayedRows()[0].last(), "12,345.7");
}

TEST_F(FrameworkGridTest, TitlesWithABandDrawTwoHeaderRows) {
    const int oneRow = grid.horizontalHeader()->sizeHint().height();
    for (int i = 0; i <= 2; ++i) grid.ColumnByField("S" + QString::number(i))->Title = "尺码|" + QString("SML").mid(i, 1);
    grid.ColumnsChanged();
    TColumnEh* s1 = grid.ColumnByField("S1");
    EXPECT_EQ(s1->TitleBand(), "尺码");
    EXPECT_EQ(s1->TitleCaption(), "M");
    EXPECT_EQ(grid.ColumnByField("K_ID")->TitleBand(), "");
    EXPECT_GT(grid.horizontalHeader()->sizeHint().height(), oneRow * 3 / 2);
    EXPECT_EQ(grid.model()->headerData(3, Qt::Horizontal, Qt::DisplayRole).toString(), "M");
    EXPECT_EQ(grid.VisibleTitles().mid(2, 3), QStringList({"尺码|S", "尺码|M", "尺码|L"}));
}

TEST_F(FrameworkGridTest, SizeColumnsAfterTheLastUsedPositionAreHidden) {
    TClientDataSet sizes;
    QStringList names;
    std::vector<std::string> columns;
    for (int i = 0; i <= 9; ++i) columns.push_back("S" + std::to_string(i));
    sizes.LoadFromResult(table(columns, {}));
    TDBGridEh g;
    g.SetDataSet(&sizes);
    G_CM = 4;
    TFrm_Base_Panel::SetSizeTitles(&g, {"S", "M", "L", "XL", "2XL", "3XL"});
    EXPECT_EQ(g.VisibleTitles(), QStringList({"尺码|S", "尺码|M", "尺码|L", "尺码|XL", "尺码|2XL"}));
    EXPECT_TRUE(g.isColumnHidden(5));
    EXPECT_TRUE(g.isColumnHidden(9));
    G_CM = 9;
    TFrm_Base_Panel::HideSizeColumnsAfterCM(&g);
    EXPECT_EQ(g.VisibleTitles().size(), 10);
    EXPECT_EQ(g.VisibleTitles()[9], "尺码|");  // a position the group leaves unnamed is titled blank
}

TEST_F(FrameworkGridTest, RepeatedValuesCanBeHidden) {
    grid.ColumnByField("K_ID")->HideDuplicates = true;
    grid.ColumnsChanged();
    const auto rows = grid.DisplayedRows();
    EXPECT_EQ(rows[0][0], "K01");
    EXPECT_EQ(rows[1][0], "");
    EXPECT_EQ(rows[2][0], "K02");
}

TEST_F(FrameworkGridTest, CellHookSeesTheDrawnRowAndSetsColoursAndText) {
    grid.OnGetCellParams = [this](TColumnEh* column, TCellParams& p) {
        if (ds.FieldByName("COL_NAME")->AsString() == "红色") p.Background = QColor(0x80, 0xFF, 0xFF);
        if (column->Field() && column->Field()->DataType != ftString && p.Text == "0") p.Text = "";
    };
    ds.Last();  // the hook must see each drawn row, not the current one
    const QModelIndex firstRow = grid.model()->index(0, 0);
    const QModelIndex secondRow = grid.model()->index(1, 0);
    EXPECT_EQ(grid.model()->data(firstRow, Qt::BackgroundRole).value<QColor>(), QColor(0x80, 0xFF, 0xFF));
    EXPECT_FALSE(grid.model()->data(secondRow, Qt::BackgroundRole).isValid());
    EXPECT_EQ(grid.DisplayedRows()[0][4], "");  // S2 = 0 blanked
    EXPECT_EQ(grid.DisplayedRows()[0][2], "3");
    EXPECT_EQ(ds.RecNo(), 3);  // drawing does not move the cursor
}

TEST_F(FrameworkGridTest, DrawHookPaintsCellsOfTheDrawnRow) {
    QStringList drawn;
    grid.OnDrawColumnCell = [&](QPainter* painter, const QRect& rect, TColumnEh* column, const TCellParams& p) {
        if (column->FieldName != "K_ID") return false;
        drawn << ds.FieldByName("COL_NAME")->AsString() + ":" + p.Text;
        painter->fillRect(rect, Qt::yellow);
        return true;
    };
    grid.show();
    grid.grab();
    EXPECT_TRUE(drawn.contains("红色:K01"));
    EXPECT_TRUE(drawn.contains("黑色:K01"));
    EXPECT_TRUE(drawn.contains("红色:K02"));
}

TEST(FrameworkGridColour, ModuleColoursAreBlueGreenRed) {
    EXPECT_EQ(TColorToQColor(0xFFFF80), QColor(0x80, 0xFF, 0xFF));
    EXPECT_EQ(TColorToQColor(0x0000FF), QColor(Qt::red));
}

TEST_F(FrameworkGridTest, TextEditorsTakeNoMoreThanTheFieldHolds) {
    TClientDataSet notes;
    notes.AddField("NOTE", ftString, 100);
    notes.CreateDataSet();
    notes.Append();
    notes.Post();
    TDBGridEh g;
    g.SetDataSet(&notes);
    g.show();
    g.EditField("NOTE");
    auto* editor = g.viewport()->findChild<QLineEdit*>();
    ASSERT_NE(editor, nullptr);
    EXPECT_EQ(editor->maxLength(), 100);
    g.CancelEdit();
}

TEST_F(FrameworkGridTest, BlankZeroColumnOption) {
    grid.ColumnByField("S1")->BlankZero = true;
    grid.ColumnsChanged();
    EXPECT_EQ(grid.DisplayedRows()[1][3], "");
    EXPECT_EQ(grid.DisplayedRows()[0][3], "2");
}

TEST_F(FrameworkGridTest, TypingInACellWritesThroughTheFieldSetter) {
    QStringList typed;
    ds.FieldByName("S0")->OnSetText = [&](TField* f, const AnsiString& t) {
        typed << t;
        f->SetAsString(t);
    };
    const QModelIndex cell = grid.model()->index(1, 2);
    EXPECT_TRUE(grid.model()->setData(cell, "7", Qt::EditRole));
    EXPECT_EQ(typed, QStringList{"7"});
    EXPECT_EQ(ds.RecNo(), 2);
    EXPECT_EQ(ds.FieldByName("S0")->AsInteger(), 7);
    EXPECT_EQ(ds.State(), dsEdit);
}

TEST_F(FrameworkGridTest, ARefusedValueIsReportedAndNotStored) {
    qx::ui::ScopedScriptedSink sink;
    ds.FieldByName("S0")->OnSetText = [](TField*, const AnsiString&) {
        DISPINFO("数量必须是数字", 5);
        Abort();
    };
    EXPECT_FALSE(grid.model()->setData(grid.model()->index(0, 2), "x", Qt::EditRole));
    EXPECT_EQ(sink->texts(), QStringList{"数量必须是数字"});
    EXPECT_EQ(ds.FieldByName("S0")->AsInteger(), 3);
}

TEST_F(FrameworkGridTest, ReadOnlyColumnsAndGridsTakeNoTyping) {
    grid.ColumnByField("STOT")->ReadOnly = true;
    grid.ColumnsChanged();
    EXPECT_FALSE(grid.model()->flags(grid.model()->index(0, 5)) & Qt::ItemIsEditable);
    EXPECT_TRUE(grid.model()->flags(grid.model()->index(0, 2)) & Qt::ItemIsEditable);
    grid.SetReadOnly(true);
    EXPECT_FALSE(grid.model()->flags(grid.model()->index(0, 2)) & Qt::ItemIsEditable);
}

TEST_F(FrameworkGridTest, GridAndDataSetCursorsFollowEachOther) {
    grid.show();
    ds.SetRecNo(3);
    EXPECT_EQ(grid.currentIndex().row(), 2);
    grid.setCurrentIndex(grid.model()->index(1, 3));
    EXPECT_EQ(ds.RecNo(), 2);
}

TEST_F(FrameworkGridTest, TitleClickRunsTheHook) {
    QStringList clicked;
    grid.OnTitleClick = [&](TColumnEh* c) { clicked << c->FieldName; };
    grid.show();
    QHeaderView* h = grid.horizontalHeader();
    QTest::mouseClick(h->viewport(), Qt::LeftButton, {}, QPoint(h->sectionViewportPosition(1) + 5, 5));
    EXPECT_EQ(clicked, QStringList{"COL_NAME"});
}

TEST_F(FrameworkGridTest, CopyPutsTheSelectedCellsOnTheClipboard) {
    grid.SetMultiSelect(true);
    grid.show();
    grid.selectionModel()->select(QItemSelection(grid.model()->index(0, 0), grid.model()->index(1, 2)),
                                  QItemSelectionModel::ClearAndSelect);
    grid.CopyToClipboard();
    EXPECT_EQ(QApplication::clipboard()->text(), "K01\t红色\t3\nK01\t黑色\t1");
    EXPECT_EQ(grid.SelectedRows(), (QList<int>{0, 1}));
}

TEST_F(FrameworkGridTest, FrozenColumnsStayInAnOverlay) {
    grid.show();
    grid.SetFrozenCols(2);
    EXPECT_EQ(grid.FrozenCols(), 2);
    auto* frozen = grid.findChild<QTableView*>("DBGridEh_Frozen");
    ASSERT_NE(frozen, nullptr);
    EXPECT_FALSE(frozen->isColumnHidden(0));
    EXPECT_FALSE(frozen->isColumnHidden(1));
    EXPECT_TRUE(frozen->isColumnHidden(2));
    grid.SetFrozenCols(0);
    EXPECT_EQ(grid.findChild<QTableView*>("DBGridEh_Frozen"), nullptr);
}

TEST_F(FrameworkGridTest, ExportsCsvAndPdf) {
    grid.ColumnByField("S0")->Title = "尺码|S";
    grid.ColumnByField("STOT")->Footer.ValueType = fvtSum;
    grid.ColumnsChanged();
    const QString csv = qx::grid::toCsv(&grid);
    const QStringList lines = csv.split("\r\n", Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 5);
    EXPECT_EQ(lines[0], "款号,颜色,尺码 S,S1,S2,合计,金额");
    EXPECT_EQ(lines[1], "K01,红色,3,2,0,5,50");
    EXPECT_EQ(lines[4], ",,,,,16,");
    QTemporaryDir dir;
    EXPECT_TRUE(qx::grid::exportCsv(&grid, dir.filePath("a.csv")));
    QFile f(dir.filePath("a.csv"));
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    EXPECT_TRUE(f.readAll().startsWith("\xEF\xBB\xBF"));
    EXPECT_TRUE(qx::grid::exportPdf(&grid, "采购进货", dir.filePath("a.pdf")));
    QFile pdf(dir.filePath("a.pdf"));
    ASSERT_TRUE(pdf.open(QIODevice::ReadOnly));
    EXPECT_TRUE(pdf.read(5) == "%PDF-");
    EXPECT_TRUE(qx::grid::toHtml(&grid, "采购进货").contains("<h3 align=center>采购进货</h3>"));
}

TEST_F(FrameworkGridTest, Screenshot) {
    for (int i = 0; i <= 2; ++i) grid.ColumnByField("S" + QString::number(i))->Title = "尺码|" + QString("SML").mid(i, 1);
    grid.ColumnByField("STOT")->Footer.ValueType = fvtSum;
    grid.ColumnsChanged();
    const QString file = qx::saveScreenshot(&grid, "framework_grid");
    EXPECT_FALSE(file.isEmpty());
    EXPECT_TRUE(QFile::exists(file));
}

}  // namespace
