#pragma once
// The per-component table of --report and the summary line, in columns that
// scripts/soak.sh reads.
#include <QTextStream>
#include <vector>

#include "componentsoak.h"

namespace kxsoak {

void PrintReport(const std::vector<TSoakResult>& results, QTextStream& out);
// One line per component as it finishes, so a long run shows progress.
void PrintProgress(const TSoakResult& result, QTextStream& out);

}  // namespace kxsoak
