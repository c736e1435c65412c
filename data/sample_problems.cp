UTF-8


1 #2
{
	Description: Josef Kling, The Chess Euclid, 1849. Kling meant 1.axb6 e.p.+ Kb1 2.0-0 mate, holding that a double step b7-b5 may be presumed as freely as the right to castle. A diagram proves no double step, the capture is not allowed, and no other first move mates in two: no solution.
	FEN: R7/7q/7r/Pp6/5p1r/7P/4Q3/k3K2R
	Answer: 
}

2 #2
{
	Description: Sam Loyd, Baltimore Dispatch, 1859. Six black men crowd round their own king on f5; the quiet retreat Bb3-a2 threatens nothing and leaves Black in zugzwang.
	FEN: 4br1n/8/4p2Q/3p1k2/4p1N1/1B4K1/8/8
	Answer:  Bb3-a2
}

3 #2
{
	Description: Sam Loyd, in American Chess-Nuts, 1868 (first source not known). The waiting move Ba4-c2 even lets the king take the rook on e4, after which the queen mates on d4.
	FEN: 7K/Q7/2pp4/3k4/B3R2N/2Pr4/8/8
	Answer:  Ba4-c2
}

4 #2
{
	Description: William A. Shinkman, 1st Prize, Lebanon Herald, 1876. A one-square queen move, a8-a7, is the key; each of the four king moves is met by a different rook mate.
	FEN: Q7/3B4/3B4/3NR2P/3R4/2p5/2p3kN/2K4b
	Answer:  Qa8-a7
}

5 #2
{
	Description: Sam Loyd, Detroit Free Press, 1879. The key Re2-f2 places the rook where the black rook can take it and threatens Rf5 mate.
	FEN: b1K1N3/1n6/5Q1b/1pk3P1/8/3P4/4R1r1/1R5B
	Answer:  Re2-f2
}

6 #2
{
	Description: Sam Loyd, 5th American Chess Congress, 1880, from the set that took third prize. Against fourteen black men the key Rg6-g2 threatens two knight mates on b5.
	FEN: 2R5/BpNnp3/qp4RK/p1k1p3/7p/PnN1p3/2Q4r/3r3b
	Answer:  Rg6-g2
}

7 #2
{
	Description: Thomas Taverner, 1st Prize, 1881. Black's bishops and rooks stand side by side on d8 to g8, the organ pipes; the waiting move Rh2-h1 leaves every one of Black's nineteen replies with a mate.
	FEN: 3brrb1/2N4B/8/2p4Q/2p2k2/5P2/4P1KR/2N2RB1
	Answer:  Rh2-h1
}

8 #2
{
	Description: Sam Loyd, Detroit Free Press, 1884. The bishop steps from d3 to c2 without a threat, and whatever Black does is answered by mate.
	FEN: 8/4N3/8/4p1P1/2K4p/3B1k1p/R6P/2Q5
	Answer:  Bd3-c2
}

9 #2
{
	Description: Sam Loyd, New York Commercial Advertiser, 1897. The quiet rook move c2-c3 threatens Re6 mate against a black queen that roams the board.
	FEN: 7B/nQ6/2q2R1K/8/3k2P1/1B4P1/2R2P2/7n
	Answer:  Rc2-c3
}

10 #2
{
	Description: Alain C. White, Deutsches Wochenschach, 1911, later used in his series on the properties of castling. Castling key: 1.0-0 threatens Qb8 and Qxe7 mate, and Black's own short castling is met by Nxe7 mate.
	FEN: 4k2r/2p1p3/2N3P1/b6q/1Q1B1pBp/6P1/2P5/R3K2R
	Answer:  0-0
}

11 #2
{
	Description: Sam Loyd, from A. C. White's book Sam Loyd and His Chess Problems, 1913. Fifteen white men against ten; Nd2-e4 threatens knight mates on both c5 and g5.
	FEN: 3nrn2/1pp1pPpP/1RP1kPBP/3pBp2/3P1P2/3R1P2/3NQK2/8
	Answer:  Nd2-e4
}

12 #2
{
	Description: Comins Mansfield, British Chess Magazine, 1915. The rook leaves b3 for g3, threatening Qa2 mate; the other rook moves along the third rank all fail to Qg6.
	FEN: 8/7B/K3Q3/4pq2/1P1p4/bR6/1B6/NkN4R
	Answer:  Rb3-g3
}

13 #2
{
	Description: Giorgio Guidelli, 1st Prize, Good Companions, January 1917. The two black knights stand half-pinned between the a5-rook and their king; Ne2-g3 threatens Qe4 mate, and once one knight moves the other is pinned.
	FEN: q7/2b5/4p1R1/Rn1nk2b/1BQ3p1/2p1N3/4N3/6K1
	Answer:  Ne2-g3
}

14 #2
{
	Description: A. G. Corrias, Good Companion, 1917. Qh7-b1 threatens Qb7 mate; Bb2 and Rb2 both stop it but get in each other's way on b2 (a Grimshaw), so Qh1 or Qf5 mates.
	FEN: 8/B2K3Q/5p2/3k4/2p2P2/p6p/r7/b7
	Answer:  Qh7-b1
}

15 #2
{
	Description: Comins Mansfield, British Chess Magazine, 1918. The rook withdraws from d6 to d1 and threatens Qc6 mate; the knight on d7 defends by moving away and Qd6 or Qg3 mates.
	FEN: n1rbb3/P1knpR2/1q1R2QK/B6p/8/8/6B1/7r
	Answer:  Rd6-d1
}

16 #2
{
	Description: Comins Mansfield, 2nd Prize, British Chess Problem Society tourney, 1919. Qh3-g4 threatens a pawn mate by f4-f5; nearly every black defence is met by a mate of its own.
	FEN: 4qb2/1nBp1pp1/B5r1/6P1/RN2kP2/KNpR2pQ/7p/5n2
	Answer:  Qh3-g4
}

17 #2
{
	Description: Comins Mansfield, 2nd Prize, British Chess Magazine, 1922. The rook goes to g6, offered to king and knight; Kxg6 allows Qf7 mate and Nxg6 allows g4 mate.
	FEN: 6K1/6p1/7b/4Pk2/2Q2n1P/2B3R1/5nP1/5R2
	Answer:  Rg3-g6
}

18 #2
{
	Description: George Hume, Good Companion, 1923, shown by A. C. White among his castling problems. Qg2-b2 threatens Qb8 mate; Black's short castling is a defence, answered by Rg4 mate.
	FEN: 4k2r/2p1p2p/2p1P2p/2K2P1P/2PR4/3P4/6Q1/8
	Answer:  Qg2-b2
}

19 #2
{
	Description: Comins Mansfield, British Chess Magazine, 1927. Qd1-h5 threatens Qf7 mate; the bishop captures on e3 or c5 and opens the way for the knight mates Nc6 and Nf7.
	FEN: 2R5/8/5K2/2PkN3/2rbrp2/4P3/6B1/1b1Q4
	Answer:  Qd1-h5
}

20 #2
{
	Description: Fadil Abdurahmanovic, 1st Prize, Yugoslav republic tourney, 1957. A miniature: each promotion of the c7-pawn fails, but the knight sacrifice Ng3-e4 hands the king four diagonal flights and each is mated.
	FEN: 5QKB/2P5/8/3k4/8/1R4N1/8/8
	Answer:  Ng3-e4
}

21 #3
{
	Description: Henry A. Loveday's Indian problem of 1845 (No. 37) asked in three moves. The critical bishop manoeuvre needs four moves here: no solution in three.
	FEN: 8/8/1p5B/1p2p3/4k1P1/1P3n2/P4PB1/K2R4
	Answer: 
}

22 #3
{
	Description: Walter Grimshaw, Chess Player's Chronicle problem competition, 1852-54. The paradoxical Rg1-f1 puts the rook in the path of the e2-pawn and prepares f3 or Nf3.
	FEN: 8/1n4K1/qpB4p/3R3P/4kp1N/2p4P/2P1pP2/6R1
	Answer:  Rg1-f1
}

23 #3
{
	Description: Henry Turton, Illustrated London News, 1856, in its usual version: the first Turton doubling. 1.Bh8 clears the long diagonal, the queen comes to g7 in front of the bishop and strikes back along it to b2.
	FEN: 2r5/7p/1P6/1pp5/2p5/2B3QK/1p1N4/k7
	Answer:  Bc3-h8
}

24 #3
{
	Description: Sam Loyd, New York Albion, 1857. Five men: 1.Rf4 hands the king g3 and h1; after 1...Kxg3 White castles, 2.0-0, and R1f3 mates; after 1...Kxh1 the king walks to f2 and Rh4 mates.
	FEN: 8/8/8/8/8/6P1/6k1/4KR1R
	Answer:  Rf1-f4
}

25 #3 AllSolutions
{
	Description: Sam Loyd, Missouri Democrat, 1859, A Lesson in Castling. Loyd's solution was 1.Rg1 against Black's castling on either wing; with both castlings open the problem is cooked by 1.Ng5-h7 and by the check 1.Nd5-c7, three keys in all.
	FEN: r3k2r/4p1p1/2P1P3/3N2N1/4B3/4BP2/PQ5P/R3K2R
	Answer:  Nd5-c7,  Ng5-h7,  Rh1-g1
}

26 #3
{
	Description: Sam Loyd, 1859, the Charles XII at Bender set, first part. 1.Rxg3 Bxg3 2.Nf3 and g2-g4 mates.
	FEN: 8/6R1/7p/5K1k/8/6p1/5bPP/4N3
	Answer:  Rg7:g3
}

27 #3
{
	Description: Sam Loyd, Chess Monthly, 1860. 1.Ne6 leaves Black in zugzwang: the h6-bishop is captured wherever it goes, then the b1-bishop must abandon the c2-pawn and Nxc2 mates.
	FEN: 8/8/7b/8/1NpN4/2p1p3/2p1P3/kbK5
	Answer:  Nd4-e6
}

28 #3
{
	Description: Frank Healey, 1st Prize, Bristol problem tourney, 1861, the Bristol clearance. 1.Rh1 only clears the first rank so that the queen can go g6-b1 and later b1-g1 with mate.
	FEN: 8/1n3Np1/1N4Q1/1bkP4/p1p2p2/P1P2R2/3P2PK/B2R4
	Answer:  Rd1-h1
}

29 #3
{
	Description: Sam Loyd, Holyoke Transcript, 1876. Promotion key 1.bxa8=N: a new queen stalemates and a rook comes too late; after 1...Kxg2 2.Nb6 guards a7 and the a-pawn promotes with mate.
	FEN: b7/PP6/8/8/7K/6B1/6N1/4R1bk
	Answer:  b7:a8N
}

30 #3
{
	Description: Sam Loyd, 1885, composed in ten minutes for a wager with Steinitz, who solved it in five. 1.fxe5 and the queen mates on f4, f5 or e4.
	FEN: 8/6p1/7p/4p2p/4KPkp/6p1/6Q1/8
	Answer:  f4:e5
}

31 #3
{
	Description: William A. Shinkman, White Rooks, 1910. A Plachutta: 1.d5 cuts off queen and bishop at once; whichever captures must guard both a8 and g8 alone and is decoyed by a rook check.
	FEN: 3k3K/R2p2R1/p2P4/8/3P4/8/q5b1/8
	Answer:  d4-d5
}

32 #3
{
	Description: D. J. Densmore, Gazette-Times, 1916. Another Plachutta: 1.Nb7 closes the lines of both black rooks, threatening Rb1 and Rh7 mate; each capture overloads the capturing rook.
	FEN: 1r4B1/r3R3/3N4/1R1nBp2/8/p4K2/4N3/7k
	Answer:  Nd6-b7
}

33 #3
{
	Description: Endre Ancsin, 3rd Prize, international team match 1936-37. Promotion key 1.e8=N, threatening Nd6 check; white and black pieces pin each other in pairs and the play is full of cross-checks.
	FEN: 2nn3B/2NpPp1B/K4Qq1/1R4r1/pb2kpP1/1r3pP1/2PPbP2/4R3
	Answer:  e7-e8N
}

34 #3
{
	Description: Kenneth S. Howard, 1938. En passant on both sides: the key 1.d4 may be taken e.p. by either black pawn; after 1...exd3 e.p. 2.f4 f5 White mates with 3.exf6 e.p.
	FEN: B4n2/3ppp2/1Np1k2N/2P1P3/2p1p2p/6B1/3P1P2/Q3R1K1
	Answer:  d2-d4
}

35 #3
{
	Description: Jan Hartong, 1st Prize, Tijdschrift van de KNSB, 1943. A Wurzburg-Plachutta: after the quiet key 1.Bd2, threatening Qxc5, the two black rooks interfere with each other on d6.
	FEN: b6n/2NpQ3/r7/p1pr1p2/N1k1PP2/1pBnK3/8/1B6
	Answer:  Bc3-d2
}

36 #3
{
	Description: R. J. Millour and M. Kerhuel, 1st Prize, Europe Echecs, 1966. After 1.e7 the pawn takes on d8 and becomes queen, rook, bishop or knight, according to where the black king has fled.
	FEN: 3nR3/3n4/2P1P3/4kBp1/N2N2p1/PQ4p1/6p1/6K1
	Answer:  e6-e7
}

37 #4 AllSolutions
{
	Description: Henry A. Loveday, The Chess Player's Chronicle, 1845, the Indian problem. Its idea is the critical move Bh6-c1 with Rd2 and Rd4 mate, but as printed it is cooked: nine first moves mate in four, all listed here.
	FEN: 8/8/1p5B/1p2p3/4k1P1/1P3n2/P4PB1/K2R4
	Answer:  Ka1-b2,  Ka1-b1,  Rd1-d6,  Rd1-d7,  Rd1-d8,  Bg2-h1,  Bh6-e3,  Bh6-c1,  Bh6-g5
}

38 #4
{
	Description: Anton Nowotny, Leipziger Illustrirte Zeitung, 1854. 1.Ng3 threatens Ne2 mate; later the other knight goes to e4, where rook and bishop may both capture and each capture shuts out the other.
	FEN: 1n5r/8/6b1/2R5/1B1k4/8/1R1K1N2/5N2
	Answer:  Nf1-g3
}

39 #4
{
	Description: Sam Loyd, 1859, the Charles XII set, second part: the white knight has been shot away. 1.hxg3, and the rook drives the bishop to h4 before g3-g4 mates.
	FEN: 8/6R1/7p/5K1k/8/6p1/5bPP/8
	Answer:  h2:g3
}

40 #4
{
	Description: Sam Loyd's Excelsior (No. 44) asked in four moves: the pawn's march needs all five, so there is no solution in four.
	FEN: n1rb4/1p3p1p/1p6/1R5K/8/p3p1PN/1PP1R3/N6k
	Answer: 
}

41 #5
{
	Description: Walter Grimshaw, Illustrated London News, 1850. The bishop sacrifice 1.Bc8 and 2.Qf6 bring the first Grimshaw: black rook and bishop get in each other's way on e6.
	FEN: 4r1r1/8/B2N4/1P1k2n1/1K2pPb1/2Q2p1n/2P5/8
	Answer:  Ba6-c8
}

42 #5
{
	Description: Robert B. Wormald, Illustrated London News, 1857, an early Excelsior: the d-pawn starts with d2-d4 check, captures its way to a7 and mates by promoting to a knight on b8.
	FEN: Kn5n/p2b4/pr1N4/1prNkP2/P1R1P3/Bp3pp1/3P4/8
	Answer:  d2-d4
}

43 #5
{
	Description: Sam Loyd, 1859, the Charles XII set, third part: knight and h-pawn are both gone, and 1.Rb7 starts a mate in five.
	FEN: 8/6R1/7p/5K1k/8/6p1/5bP1/8
	Answer:  Rg7-b7
}

44 #5
{
	Description: Sam Loyd, London Era, 1861, Excelsior. After 1.b4 the pawn from b2 marches up the board and in the main line gives mate by promoting on a8.
	FEN: n1rb4/1p3p1p/1p6/1R5K/8/p3p1PN/1PP1R3/N6k
	Answer:  b2-b4
}
