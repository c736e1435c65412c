// The five- and six-movers of the corpus: about forty seconds and four
// minutes on this machine, so they have a test program of their own that ctest
// runs beside the others. The six-movers need the temporary register, which the
// proof uses from ten plies on; the seven- and eight-movers wait for move ordering.
#include "corpus_solving.h"

namespace zorvane {
namespace {

TEST(CorpusKeysLong, FiveMovers) { SolveCorpus(5, 5, false, true); }
TEST(CorpusKeysLong, SixMovers) { SolveCorpus(6, 6, false, true); }

} // namespace
} // namespace zorvane
