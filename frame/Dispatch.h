#pragma once
// From function code to screen: the table of every code the module answers, and the three ways
// a screen is opened. QXProc2 (Qxfunc2.h) is a thin entry over dispatch() below.
//
// Adding a screen is one line: its header in FunctionTable.cpp and, in its row, the factory
//     screen<TQXCK201, &QXCK201>
// in place of nullptr. The row already holds the pattern and the precondition.
#include <QWidget>
#include <memory>
#include <span>

#include "framework/U_glo.h"

namespace qx::frame {

// How the dispatcher opens a screen.
enum class Pattern {
    Embedded,        // A: Tag, virtual InitForm; the screen shows itself and lives on
    ModalDialog,     // B: SetUserParam, the class's own InitForm, ShowModal, Release
    ListWithParams,  // C: Tag, SetUserParam, virtual InitForm; lives on like A
};

// What must hold before a screen may open.
enum class Precondition {
    None,
    SeveralWarehouses,               // transfers: more than one warehouse registered
    SeveralWarehousesReadableByUser  // distribution: and the user may read two or more
};

// The part of the module a function belongs to (the host groups its menu by it).
enum class Subsystem { Documents, Reports, Period, Setup, Labels };

// One freshly created screen as the dispatcher drives it. The factory has already stored the
// screen in its unit's screen variable; every call goes through that variable.
class ScreenHandle {
public:
    virtual ~ScreenHandle() = default;
    virtual void setTag(int code) = 0;
    virtual void setUserParam(const Trecord& rec) = 0;  // the record's six texts, in order
    virtual void initForm(const Trecord& rec) = 0;      // the virtual InitForm(const Trecord&)
    virtual void initDialog(const Trecord& rec) = 0;    // the dialog class's own InitForm
    virtual void showModal() = 0;                       // returns when the dialog is closed
    virtual void release() = 0;
};

// Creates the screen of one code with `owner` as its owner.
using ScreenFactory = std::unique_ptr<ScreenHandle> (*)(QWidget* owner);

struct FunctionRow {
    int code;
    const char* screenClass;  // e.g. "TQXCK201"
    const char* unit;         // e.g. "Frmqxck201"
    const char* base;         // framework class the screen derives from
    const char* caption;      // the screen's own title
    Pattern pattern;
    Precondition precondition;
    Subsystem subsystem;
    ScreenFactory factory;  // nullptr while the screen is not part of the module yet
};

// Every code that is meant to open something, in code order.
std::span<const FunctionRow> functionTable();

// The row of a code, or nullptr for a code that opens nothing.
const FunctionRow* findFunction(int code);

// The whole entry: precondition, creation, opening by pattern. Keeps its own counted copy of
// the record for the duration of the call. Exceptions of the screen propagate unchanged.
void dispatch(const Trecord& rec, QWidget* mainForm);

// The messages of the blocked preconditions, exactly as the user sees them.
inline constexpr const char* kOnlyOneWarehouseMessage =
    "系统检测到您只登记一个仓库,调拔功能必须存在多个仓库方可使用!";
inline constexpr const char* kDistributionRightsMessage =
    "仓库分布功能必须要有读取两个仓库以上的权限才能执行!";

// Drives a framework screen class through its unit's screen variable. `Screen` is a framework
// form (TFrm_Base_* descendant) with Tag, SetUserParam, InitForm, ShowModal and Release.
template <class Screen, Screen** Variable>
class FormHandle final : public ScreenHandle {
public:
    explicit FormHandle(QWidget* owner) { *Variable = new Screen(owner); }
    void setTag(int code) override { (*Variable)->Tag = code; }
    void setUserParam(const Trecord& r) override {
        (*Variable)->SetUserParam(r.UserId, r.UserName, r.CkId, r.CkName, r.CoName, r.DbName);
    }
    void initForm(const Trecord& r) override { (*Variable)->InitForm(r); }
    void initDialog(const Trecord& r) override { (*Variable)->Screen::InitForm(r); }
    void showModal() override { (*Variable)->ShowModal(); }
    void release() override { (*Variable)->Release(); }
};

// The factory to put into a table row: screen<TQXCK201, &QXCK201>.
template <class Screen, Screen** Variable>
std::unique_ptr<ScreenHandle> screen(QWidget* owner) {
    return std::make_unique<FormHandle<Screen, Variable>>(owner);
}

}  // namespace qx::frame
