#!/usr/bin/env bash
# Builds the libFuzzer targets in ./build-fuzz and runs each of them.
#   scripts/fuzz.sh [seconds] [target ...]
# Seconds per target default to 60; the targets to all of them. Corpora and
# crash inputs stay in ./fuzz-out/<target>/, so a later run starts where the
# last one stopped. Exits non-zero if any target found a fault.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds="${1:-60}"
shift || true
targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
    targets=(fen_reader_fuzz move_text_fuzz problem_file_fuzz options_reader_fuzz mate_in_one_fuzz
        variant_text_fuzz sort_indication_fuzz fen_check_fuzz heuristic_options_fuzz epd_mates_fuzz table_file_fuzz)
fi

CXX="${CXX:-clang++-14}" cmake -S . -B build-fuzz -G Ninja -DZORVANE_FUZZ=ON -DZORVANE_TESTS=OFF \
    -DZORVANE_BENCH=OFF >/dev/null
cmake --build build-fuzz -j"${JOBS:-1}" --target "${targets[@]}"

# A few well-formed inputs give the fuzzer a start beyond the first byte.
seed() {
    local dir="$1"
    shift
    local i=0
    for text in "$@"; do
        printf '%s' "$text" >"$dir/seed$i"
        i=$((i + 1))
    done
}

status=0
for target in "${targets[@]}"; do
    out="fuzz-out/$target"
    mkdir -p "$out/corpus" "$out/artifacts"
    if [ -z "$(ls -A "$out/corpus")" ]; then
        case "$target" in
        fen_reader_fuzz)
            seed "$out/corpus" "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1" \
                "r3k2r/8/8/8/8/8/8/R3K2R b Kq e3 0 1" "hgswk3/8/8/8/8/8/8/HGSWK3" "8/8/8/8/8/8/8/8" \
                "8/8/7p/R2pP2k/7p/8/8/2K3R1 w - d6 0 1" "5k2/7R/8/Pn6/8/8/8/R3K3 w Q - 0 1" ;;
        fen_check_fuzz)
            seed "$out/corpus" $'Problem 12: rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1\nand 8/8/8/8/8/4K3/2R5/k7 b - - 3 40' \
                "4k3/8/8/8/8/8/8/4K3" ;;
        move_text_fuzz)
            seed "$out/corpus" "e2-e4" "d4:e5" "Ng1-f3" "e7-e8Q" " 0-0 " "0-0-0" "Qd8xh4" ;;
        problem_file_fuzz)
            seed "$out/corpus" \
                $'UTF-8\n//!default #3 AllSolutions\n1 #3 NoMirror THREADS 4^2 GUICHECK 2 Requires x SH_KEYLINE ( a ) SH_ZUGZWANG OFF\n//#TAGS\n//#tag\n//!VARIANTS\n//!{Main variant} d1-d7[key] e8-f8\n//!ENDVARIANTS\n//@SortIndications: 1.Qd7; ~a2-a3\n{\n\tDescription: text\n\tFEN: 4k3/8/8/8/8/8/P7/3QK3\n\tAnswer: Qd1-d7, 0-0\n}\n' \
                $'\xEF\xBB\xBF1 #3\n{\n\tFEN: 8/8/8/8/8/2K5/1R6/k7\n\tMoves: Rb2-h2 Ka1-b1\n\tAnswer: Rb2-b3\n}\n' \
                $'7 s#2\n{\n\tD: lists\n\tWhite: Ke1, Ra1, Rh1, e2\n\tBlack: Ke8, d7\n\tMoves: e2-e4 d7-d5 e4-e5 0-0-0\n\tExpectedSortWhiteMoves: e5-e6\n}\n' \
                $'9 NoMirror\r\n{\r\n\tFEN: r3k2r/pppppppp/8/8/8/8/PPPPPPPP/R3K2R\r\n\tMoves: e2-e4 d7-d5 e4-e5 f7-f5 e5:f6 0-0-0 0-0\r\n}\r\n' ;;
        mate_in_one_fuzz)
            seed "$out/corpus" "7R/8/4Qp2/1p2b3/3rkp2/6P1/1P2P3/5RK1 w" "3R4/4p3/3P2B1/8/3P4/KQP5/ppp1p3/qkrbN3 w" \
                "4rkr1/4p1p1/8/8/8/8/8/4K2R w K -" "6k1/6pp/3Nn3/8/2B5/8/8/RK6 w" "3k4/1P1P4/K7/8/8/8/8/2R5 w" ;;
        variant_text_fuzz)
            # The first byte holds the options (see fuzz/variant_text_fuzz.cpp).
            seed "$out/corpus" "2{Main variant} Kf6-g6[quiet] Kf8-g8 Re1-e8" \
                "1{Wariant główny} e2-e4 e7-e5 Ng1-f3[develops]" "W{x} 0-0[short] 0-0-0 b7-b8Q" \
                $'\xb8{Try} Rd1:d8[the\nkey] Kh8-g7 a7-a8Q\ne2-e4' "p e2-e4 [open" ;;
        sort_indication_fuzz)
            seed "$out/corpus" "1.Qd7; ~a2-a3" "e2-e4, 3.Qh5+, ~Ng1>f3, e7:d8Q++" "0-0; K0-0-0; 2.pe5:d6" \
                "Hd1-d7; Ws1; ~12.Gc4:f7+" ;;
        options_reader_fuzz)
            seed "$out/corpus" $'[chess]\nQuickMode=0\nSchedulerLevels=5\nLichessLevels=-1\n' \
                $'\xEF\xBB\xBF; mine\r\n[Chess]\r\n LogMoves = 1 \r\nPrecalcPath="D:\\T"\r\n\r\n[other]\r\nA=1' ;;
        epd_mates_fuzz)
            seed "$out/corpus" $'8/8/8/8/8/2K5/1R6/k7 w - - bm #2;\n' \
                $'# comment\r\n6k1/5ppp/8/8/8/8/8/R5K1 w - - bm #1; id "x";\n\n1k6/8/1K6/8/8/8/8/7R w - - bm #12;' ;;
        table_file_fuzz)
            # The first byte: the type (low bits) and whether to pad to its size (0x80).
            seed "$out/corpus" $'\x80\x00' $'\x81\x01' $'\x82\x00' $'\x00\x00\x00' $'\x84\x04' ;;
        heuristic_options_fuzz)
            # Lines of a bit (the first byte modulo 32: B the edge, F the band, I FFM,
            # G unblock, Z corner, [ sea snake, M key diagonal...) and its text.
            seed "$out/corpus" $'BSTRICT\nFC2A,D3,M0,incl.corner,strict\nI#2+-Preliminary\nGEFF,E6,F7\nZ3S' \
                $'BALMOST_STRICT,C2A,D3,M11,incl.corner\nFC2A,D3,M11,incl.corner\n[A1,B2,3\nMA1-C3\nLe\nVE2\nEC3' \
                $'CBlackFieldsOnly\nOincl.pawnsBeforePromo\nSstrict\nRE4\nKstrict\nYstrict\n_OFF\nZ2M' \
                $'BSTRICT\nFC2\nICheckOnly-Custom\nHx' ;;
        esac
    fi
    echo "== $target: $seconds s"
    if ! "build-fuzz/bin/$target" -max_total_time="$seconds" -rss_limit_mb=2048 \
        -artifact_prefix="$out/artifacts/" "$out/corpus"; then
        echo "== $target found a fault; inputs in $out/artifacts/" >&2
        status=1
    fi
done
exit $status
