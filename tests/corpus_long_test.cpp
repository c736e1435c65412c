// The five- and six-movers of the corpus: some ten and forty seconds on this
// machine, so they have a test program of their own that ctest runs beside the
// others. The six-movers need the temporary register, which the solve uses
// from ten plies on.
#include "corpus_solving.h"

namespace zorvane {
namespace {

TEST(CorpusKeysLong, FiveMovers) { SolveCorpus(5, 5, false, true); }
TEST(CorpusKeysLong, SixMovers) { SolveCorpus(6, 6, false, true); }

} // namespace
} // namespace zorvane
