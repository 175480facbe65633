#include "setup/Frmqxcks01.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QGroupBox>
#include <QProgressDialog>
#include <QRegularExpression>
#include <QUrl>
#include <QVBoxLayout>

#include "framework/Settings.h"
#include "setup/Frmqxcks01_1.h"
#include "setup/ImportPreview.h"

TQXCKS01* QXCKS01 = nullptr;

using namespace qx::setup;

namespace qx::setup {
namespace {
FilePicker& currentPicker() {
    static FilePicker picker;
    return picker;
}
const SheetSpec& partnerSpec(int sheet) {
    return sheet == 0 ? customerSheet() : sheet == 1 ? supplierSheet() : memberSheet();
}
}  // namespace

FilePicker setFilePicker(FilePicker picker) {
    FilePicker previous = std::move(currentPicker());
    currentPicker() = std::move(picker);
    return previous;
}

QString pickFile(QWidget* parent, const QString& title, const QString& suggested, bool save) {
    if (currentPicker()) return currentPicker()(title, suggested, save);
    const QString filter = "Excel / CSV (*.xlsx *.xls *.csv)";
    return save ? QFileDialog::getSaveFileName(parent, title, suggested, filter)
                : QFileDialog::getOpenFileName(parent, title, suggested, filter);
}

QString templateFolder() {
    const QString env = qEnvironmentVariable("QXCK_TEMPLATE_DIR");
    return env.isEmpty() ? qx::settings::programFile("r") : env;
}

QString clearDocumentsBatch(bool keepOpening) {
    QString batch =
        "DELETE FROM[D631];DELETE FROM[D641];DELETE FROM[SYS_LOG_IUD];DELETE FROM[D8300];DELETE FROM[D8303];DELETE "
        "FROM[D8301];DELETE FROM[D8202];DELETE FROM[D8203];DELETE FROM[D8201];DELETE FROM[D704a];DELETE "
        "FROM[D704];DELETE FROM[D703];DELETE FROM[D8102];DELETE FROM[D8101];DELETE FROM[D712];DELETE "
        "FROM[D713];update d1800 set kc = 0, dj = 0, money = 0;";
    if (!keepOpening) batch += "DELETE FROM[D1802];DELETE FROM[D1801];";
    batch +=
        "UPDATE D1802 SET k0=b0,k1=b1,k2=b2,k3=b3,k4=b4,k5=b5,k6=b6,k7=b7,k8=b8,k9=b9;"
        "UPDATE D1800 SET KC=T.SL,MONEY=T.JE FROM (SELECT D1801.K_ID,SUM(D1802.B0+D1802.B1+D1802.B2+"
        "D1802.B3+D1802.B4+D1802.B5+D1802.B6+D1802.B7+D1802.B8+D1802.B9) AS SL,SUM(D1802.BEGIN_MONEY) AS JE FROM D1802 "
        "INNER JOIN D1801 ON D1802.WL_ID=D1801.WL_ID GROUP BY D1801.K_ID,D1802.B0,D1802.B1,D1802.B2,D1802.B3,D1802.B4,"
        "D1802.B5,D1802.B6,D1802.B7,D1802.B8,D1802.B9) T WHERE D1800.K_ID=T.K_ID;"
        "UPDATE D1800 SET DJ=0;UPDATE D1800 SET DJ=MONEY/DJ WHERE KC>0 AND MONEY>0;";
    return batch;
}

AnsiString execInitialisation(const AnsiString& batch) {
    return ExecSql("901", "", "B", batch, 0, false, true, true, true);
}

}  // namespace qx::setup

namespace {
QLineEdit* fileEdit(QWidget* parent, QBoxLayout* layout, const QString& name) {
    auto* edit = new QLineEdit(parent);
    edit->setObjectName(name);
    edit->setPlaceholderText("要导入的文件 (.xlsx / .xls / .csv);空白时在读取前选择");
    layout->addWidget(edit);
    return edit;
}

QPushButton* button(QWidget* parent, QBoxLayout* layout, const QString& name, const QString& caption) {
    auto* b = new QPushButton(caption, parent);
    b->setObjectName(name);
    b->setMinimumHeight(30);
    layout->addWidget(b);
    return b;
}

bool isPlainNumber(const QString& text) {
    static const QRegularExpression number("^-?\\d+(\\.\\d+)?$");
    return number.match(text).hasMatch();
}
}  // namespace

TQXCKS01::TQXCKS01(QWidget* Owner) : TFrm_Base_Dialog(Owner) {
    setObjectName("QXCKS01");
    SetCaption("系统初始化");
    Panel_Condition->hide();
    btn_ok->hide();
    btn_cancel->setText("关闭");
    AdoQry_Tmp = new TClientDataSet(this);
    AdoQry_Tmp->setObjectName("AdoQry_Tmp");
    PageControl = new QTabWidget;
    PageControl->setObjectName("PageControl");
    MainLayout()->insertWidget(0, PageControl, 1);

    auto* goods = new QWidget;
    goods->setObjectName("GoodsPage");
    auto* g = new QVBoxLayout(goods);
    const char* steps[5] = {"1.初始准备(EXCEL文档)", "2.准备上传", "3.上传", "4.验证数据是否符合导入格式",
                            "5.数据确认"};
    for (int i = 0; i < 5; ++i) {
        btn_step[size_t(i)] = button(goods, g, "btn_step" + QString::number(i + 1), steps[i]);
        if (i == 0) FileName[0] = fileEdit(goods, g, "FileName0");
    }
    Lab_Status = new QLabel(goods);
    Lab_Status->setObjectName("Lab_Status");
    g->addWidget(Lab_Status);
    auto* hint = new QLabel("提示：导入将清空现有的商品、库存、单据资料,请先备份数据库!支持 Excel (.xlsx/.xls) 与 CSV (UTF-8) 文件。");
    hint->setWordWrap(true);
    g->addWidget(hint);
    g->addStretch();
    PageControl->addTab(goods, "商品资料导入");
    qx::connectGuarded(btn_step[0], &QPushButton::clicked, this, [this] { btn_step1Click(btn_step[0]); });
    qx::connectGuarded(btn_step[1], &QPushButton::clicked, this, [this] { btn_step2Click(btn_step[1]); });
    qx::connectGuarded(btn_step[2], &QPushButton::clicked, this, [this] { btn_step3Click(btn_step[2]); });
    qx::connectGuarded(btn_step[3], &QPushButton::clicked, this, [this] { btn_step4Click(btn_step[3]); });
    qx::connectGuarded(btn_step[4], &QPushButton::clicked, this, [this] { btn_step5Click(btn_step[4]); });

    const char* tabs[3] = {"【客户资料】初始化", "【供应商】资料初始化", "【会员】资料初始化"};
    const char* what[3] = {"客户", "供应商", "会员"};
    for (int s = 0; s < 3; ++s) {
        auto* page = new QWidget;
        page->setObjectName("PartnerPage" + QString::number(s));
        auto* v = new QVBoxLayout(page);
        btn_template[size_t(s)] = button(page, v, "btn_template" + QString::number(s), "1.初始准备(EXCEL文档)");
        FileName[size_t(s) + 1] = fileEdit(page, v, "FileName" + QString::number(s + 1));
        ClearFirst[size_t(s)] = new QRadioButton("导入前清空原有" + QString(what[s]) + "资料", page);
        ClearFirst[size_t(s)]->setObjectName("ClearFirst" + QString::number(s));
        KeepData[size_t(s)] = new QRadioButton("我要保留原有数据(编号重复时导入失败)", page);
        KeepData[size_t(s)]->setObjectName("KeepData" + QString::number(s));
        KeepData[size_t(s)]->setChecked(true);
        v->addWidget(ClearFirst[size_t(s)]);
        v->addWidget(KeepData[size_t(s)]);
        btn_import[size_t(s)] =
            button(page, v, "btn_import" + QString::number(s), "2.开始导入【" + QString(what[s]) + "】");
        v->addStretch();
        PageControl->addTab(page, tabs[s]);
        qx::connectGuarded(btn_template[size_t(s)], &QPushButton::clicked, this, [this, s] { btn_templateClick(s); });
        qx::connectGuarded(btn_import[size_t(s)], &QPushButton::clicked, this, [this, s] { btn_importClick(s); });
    }

    auto* clear = new QWidget;
    clear->setObjectName("ClearPage");
    auto* c = new QVBoxLayout(clear);
    ClearAll = new QRadioButton("清除所有单据（不保留库存初始值）", clear);
    ClearAll->setObjectName("ClearAll");
    KeepOpening = new QRadioButton("清除所有单据（保留期初库存）", clear);
    KeepOpening->setObjectName("KeepOpening");
    KeepOpening->setChecked(true);
    c->addWidget(ClearAll);
    c->addWidget(KeepOpening);
    btn_clear = button(clear, c, "btn_clear", "开始清除");
    auto* note = new QLabel("注意：单据较多时清除可能超时,超时后请再次执行清除。");
    note->setWordWrap(true);
    c->addWidget(note);
    c->addStretch();
    PageControl->addTab(clear, "清除数据");
    qx::connectGuarded(btn_clear, &QPushButton::clicked, this, [this] { btn_clearClick(btn_clear); });
    resize(640, 420);
    FormCreate();
}

void TQXCKS01::InitForm(const Trecord&) { PageControl->setCurrentIndex(0); }

void TQXCKS01::copyTemplate(const SheetSpec& spec) {
    const QString source = QDir(templateFolder()).filePath(QString(spec.templateName) + ".xlsx");
    if (!QFile::exists(source)) {
        DISPINFO("找不到模板文件 " + source + "!", 5);
        return;
    }
    const QString target = pickFile(this, "保存模板", QString(spec.templateName) + ".xlsx", true);
    if (target.isEmpty()) return;
    QFile::remove(target);
    if (!QFile::copy(source, target)) {
        DISPINFO("无法保存模板到 " + target + "!", 5);
        return;
    }
    QFile::setPermissions(target, QFile::permissions(target) | QFileDevice::WriteOwner);
    if (QGuiApplication::platformName() != "offscreen") QDesktopServices::openUrl(QUrl::fromLocalFile(target));
}

bool TQXCKS01::readAndPreview(const SheetSpec& spec, QLineEdit* fileName, ScanResult& scan, std::vector<int>& rows) {
    QString file = fileName->text().trimmed();
    if (file.isEmpty()) file = pickFile(this, "选择要导入的" + QString(spec.name) + "文件", {}, false);
    if (file.isEmpty()) return false;
    Lab_Status->setText("正在扫描数据...");
    QProgressDialog progress("正在扫描数据...", {}, 0, 100, this);
    progress.setObjectName("ScanProgress");
    progress.setWindowModality(Qt::WindowModal);
    progress.setMinimumDuration(500);
    SheetRows sheet;
    try {
        sheet = readSheet(file);
    } catch (const SheetError& e) {
        Lab_Status->clear();
        DISPINFO(e.message(), 5);
        return false;
    }
    scan = scanSheet(spec, sheet, [&](int done, int total) {
        progress.setValue(total > 0 ? done * 100 / total : 100);
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    });
    progress.setValue(100);
    Lab_Status->clear();
    if (scan.rows.empty()) {
        DISPINFO("文件中没有可导入的资料(第 1 行为栏目名称,资料从第 2 行开始)!", 5);
        return false;
    }
    TImportPreview preview(this, spec, file, scan);
    if (preview.ShowModal() != mrOk) return false;
    rows = acceptedRows(scan, preview.SkipBadRows);
    return !rows.empty();
}

void TQXCKS01::btn_step1Click(QObject*) { copyTemplate(goodsSheet()); }

void TQXCKS01::btn_step2Click(QObject*) {
    Scanned = ScanResult{};
    ScannedRows.clear();
    ScanResult scan;
    std::vector<int> rows;
    if (!readAndPreview(goodsSheet(), FileName[0], scan, rows)) return;
    Scanned = std::move(scan);
    ScannedRows = std::move(rows);
    Lab_Status->setText("已扫描 " + QString::number(ScannedRows.size()) + " 笔资料,请进行第3步 上传。");
}

QString TQXCKS01::UploadBatch(const ScanResult& scan, const std::vector<int>& rows) {
    QString batch = "delete from d1801imp;";
    batch.reserve(int(rows.size()) * 260);
    for (int r : rows) {
        QStringList values;
        const QStringList& cells = scan.rows[size_t(r)];
        for (int c = 0; c < cells.size(); ++c) {
            const QString& v = cells[c];
            if (v.isEmpty()) values << "NULL";
            else if (scan.numeric[size_t(r)][size_t(c)] && isPlainNumber(v)) values << v;
            else values << QuotedStr(v);
        }
        batch += "insert into d1801imp (A, B, C, D ,E, F, G,dyear,djj,col_id, H, I, J, K, L, M, N, O, P, Q, R, S, "
                 "T,U,V,w,x,vipf,check_kc)"
                 " values (" +
                 values.join(",") + ");";
    }
    return batch;
}

void TQXCKS01::btn_step3Click(QObject*) {
    if (ScannedRows.empty()) {
        DISPINFO("无资料上传,请先运行第2步 准备上传", 5);
        return;
    }
    Lab_Status->setText("正在上传...");
    QApplication::setOverrideCursor(Qt::WaitCursor);
    AnsiString result;
    try {
        result = execInitialisation(UploadBatch(Scanned, ScannedRows));
    } catch (...) {
        QApplication::restoreOverrideCursor();
        Lab_Status->clear();
        throw;
    }
    QApplication::restoreOverrideCursor();
    Lab_Status->clear();
    if (result == "Y")
        DISPINFO("资料上传完毕!共上传记录" + QString::number(ScannedRows.size()) + "笔!请进行下一步数据验证!", 5);
}

void TQXCKS01::btn_step4Click(QObject*) {
    opensql(AdoQry_Tmp, "901", "SELECT COUNT(B) AS B FROM D1801IMP GROUP BY B HAVING (COUNT(B) > 1)", 0, 0, {}, {},
            false, "1");
    DISPINFO("资料验证完毕,资料符合导入格式,请进行下一步!", 5);
}

void TQXCKS01::btn_step5Click(QObject*) {
    QXCKS01_1 = new TQXCKS01_1(this);
    QXCKS01_1->InitForm();
    QXCKS01_1->ShowModal();
    QXCKS01_1->Release();
    QXCKS01_1 = nullptr;
}

void TQXCKS01::btn_templateClick(int sheet) { copyTemplate(partnerSpec(sheet)); }

QString TQXCKS01::PartnerBatch(int sheet, bool clearFirst, const ScanResult& scan, const std::vector<int>& rows) {
    static const char* const clears[3] = {"delete from d1102;", "delete  from d1103;", "delete from D702;"};
    QString batch = clearFirst ? clears[sheet] : "";
    const SheetSpec& spec = partnerSpec(sheet);
    QStringList columns;
    for (const ColumnSpec& c : spec.columns) columns << c.field;
    QString head;
    if (sheet < 2)
        head = QString("insert into ") + (sheet == 0 ? "D1102" : "D1103") + " (" + columns.join(",") +
               ",KM_IDA,KM_IDB) values ('";
    else
        head = "insert into D702 (" + columns.join(",") + ") values ('";
    for (int r : rows) {
        QStringList values;
        for (const QString& v : scan.rows[size_t(r)]) values << SqlStr(v);
        batch += head + values.join("','") + (sheet < 2 ? "','A','A');" : "');");
    }
    return batch;
}

void TQXCKS01::btn_importClick(int sheet) {
    ScanResult scan;
    std::vector<int> rows;
    if (!readAndPreview(partnerSpec(sheet), FileName[size_t(sheet) + 1], scan, rows)) return;
    AnsiString result;
    try {
        result = execInitialisation(PartnerBatch(sheet, ClearFirst[size_t(sheet)]->isChecked(), scan, rows));
    } catch (const EDatabaseError&) {
        DISPINFO("导入失败,请检查编号是否重复!", 5);
        return;
    }
    if (result == "Y") DISPINFO("共导入记录" + QString::number(rows.size()) + "笔," + "成功导入!", 5);
    else DISPINFO("导入失败,请检查编号是否重复!", 5);
}

void TQXCKS01::btn_clearClick(QObject*) {
    AnsiString result;
    try {
        result = execInitialisation(clearDocumentsBatch(KeepOpening->isChecked()));
    } catch (const EDatabaseError&) {
        DISPINFO("单据清除错误!", 5);
        return;
    }
    DISPINFO(result == "Y" ? "单据已全部清除!" : "单据清除错误!", 5);
}
