// The seven- and eight-movers of the corpus: several minutes on this machine.
// They carry the CTest label "slow", which the everyday test run leaves out;
// run them with `ctest --test-dir build -L slow`.
#include "corpus_solving.h"

namespace zorvane {
namespace {

TEST(CorpusKeysSlow, SevenMovers) { SolveCorpus(7, 7, false, true); }
TEST(CorpusKeysSlow, EightMovers) { SolveCorpus(8, 8, false, true); }

} // namespace
} // namespace zorvane
