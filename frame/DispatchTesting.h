#pragma once
// For tests only: stand-in screens for codes whose real screen is not wanted in a test (or not
// part of the module yet). The host never includes this header; nothing in its menu reaches it.
#include <functional>
#include <memory>

#include "frame/Dispatch.h"

namespace qx::frame::testing {

using TestFactory = std::function<std::unique_ptr<ScreenHandle>(QWidget* owner)>;

// From now on `code` opens what `factory` creates, with the row's own pattern and precondition.
// Only codes of the function table can be given one.
Q_DECL_EXPORT void setFactory(int code, TestFactory factory);
// Back to the table's own factories.
Q_DECL_EXPORT void clearFactories();

}  // namespace qx::frame::testing
