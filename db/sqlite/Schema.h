#pragma once
// The shop database's table and view definitions (T-SQL, frame/tables), compiled into qx_db.
#include <vector>

#include "db/EmbeddedFile.h"

namespace qx {

// Table families in creation order: master data, stock, documents, retail, system, staging.
std::vector<EmbeddedFile> tableDefinitions();
// The views the module reads (V1809, V_D8303A, v_D712).
std::vector<EmbeddedFile> viewDefinitions();
// The rows a new shop starts with (the summaries' grouping items, the annual month columns),
// written by every engine once the tables exist.
std::vector<EmbeddedFile> seedRows();

}  // namespace qx
