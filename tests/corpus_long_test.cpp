// The five-movers of the corpus: about forty seconds for the plain search, so
// they have a test program of their own that ctest can run beside the others.
// The six- to eight-movers take far longer without the memory of solved
// positions; the solve benchmark covers the long problems meanwhile.
#include "corpus_solving.h"

namespace zorvane {
namespace {

TEST(CorpusKeysLong, FiveMovers) { SolveCorpus(5, 5, false, true); }

} // namespace
} // namespace zorvane
