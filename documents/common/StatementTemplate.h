#pragma once
// Fills a statement template: every {name} is replaced by the quoted-safe text the resolver
// gives for it (through the quoting helper); names the resolver does not know stay as written.
// One pass from left to right, so a value that contains "{...}" is never filled again.
#include <QString>
#include <functional>

namespace qx::documents {

using PlaceholderResolver = std::function<bool(const QString& name, QString& value)>;

QString fillTemplate(const QString& statement, const PlaceholderResolver& resolve);

}  // namespace qx::documents
