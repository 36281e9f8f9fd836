// Two programs keep loops of one track: what is in this program's hands and what stands in the file become one record.
// Pure, any thread.
#pragma once

#include <cstdint>

#include "practice/PracticeRecord.h"

namespace qm {

enum class LoopOrder { Ours, Theirs };

// Of two entries of one id the one that changed last, of two as new the removal, then the file's. The order of the
// loops is one side's; what the other side has besides stands behind what it stands behind there. Removals that are
// older than 90 days are forgotten.
PracticeRecord merged(const PracticeRecord& ours, const PracticeRecord& theirs, LoopOrder order,
                      std::int64_t now /* milliseconds since 1970 */);

}  // namespace qm
