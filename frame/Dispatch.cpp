#include "frame/Dispatch.h"

#include <map>
#include <stdexcept>

#include "frame/DispatchTesting.h"
#include "framework/U_function.h"

namespace qx::frame {
namespace {

std::map<int, testing::TestFactory>& testFactories() {
    static std::map<int, testing::TestFactory> factories;
    return factories;
}

std::unique_ptr<ScreenHandle> createScreen(const FunctionRow& row, QWidget* mainForm) {
    if (const auto test = testFactories().find(row.code); test != testFactories().end())
        return test->second(mainForm);
    if (row.factory) return row.factory(mainForm);
    return nullptr;
}

// Shows the message of a blocked precondition; true when the screen may open.
bool preconditionHolds(Precondition precondition) {
    switch (precondition) {
        case Precondition::None:
            return true;
        case Precondition::SeveralWarehouses:
            if (G_CKCOUNT_C != 0) {
                DISPINFO(kOnlyOneWarehouseMessage, 5);
                return false;
            }
            return true;
        case Precondition::SeveralWarehousesReadableByUser:
            // Either flag alone blocks; both lead to the same message.
            if (G_CKCOUNT_C != 0 || G_CKCOUNT_R != 0) {
                DISPINFO(kDistributionRightsMessage, 5);
                return false;
            }
            return true;
    }
    return false;
}

void open(ScreenHandle& screen, Pattern pattern, int code, const Trecord& rec) {
    switch (pattern) {
        case Pattern::Embedded:
            screen.setTag(code);
            screen.initForm(rec);
            return;
        case Pattern::ModalDialog:
            screen.setUserParam(rec);
            screen.initDialog(rec);
            screen.showModal();  // its result means nothing to the host
            screen.release();
            return;
        case Pattern::ListWithParams:
            screen.setTag(code);
            screen.setUserParam(rec);
            screen.initForm(rec);
            return;
    }
}

}  // namespace

void dispatch(const Trecord& rec, QWidget* mainForm) {
    // The record's texts are counted: this copy holds them until we leave, whichever way.
    const Trecord copy = rec;
    const FunctionRow* row = findFunction(copy.FuncCode);
    if (!row) return;  // not one of ours: nothing to open, nothing to say
    if (!preconditionHolds(row->precondition)) return;
    // The screen itself belongs to mainForm; the handle only drives it through the variable.
    const auto screen = createScreen(*row, mainForm);
    if (!screen) return;  // the screen of this code is not part of the module yet
    open(*screen, row->pattern, copy.FuncCode, copy);
}

namespace testing {

void setFactory(int code, TestFactory factory) {
    if (!findFunction(code))
        throw std::invalid_argument("no function code " + std::to_string(code) + " in the table");
    testFactories()[code] = std::move(factory);
}

void clearFactories() {
    testFactories().clear();
}

}  // namespace testing
}  // namespace qx::frame
