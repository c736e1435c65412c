UTF-8


1 #1
{
	Description: Back rank
	FEN: 6k1/5ppp/8/8/8/8/8/3R2K1
	Answer:  Rd1-d8
}

2 #2
{
	Description: The king steps aside
	FEN: 5k2/8/5K2/8/8/8/8/4R3
	Answer:  Kf6-g6
}

3 #3
{
	Description: Rook and king in the corner
	FEN: 8/8/8/8/8/2K5/1R6/k7
	Answer:  Rb2-b3,  Rb2-c2
}

4 #5
{
	Description: Rook and king from afar
	FEN: 8/8/8/8/8/4K3/2R5/k7
	Answer:  Ke3-e2,  Ke3-d2,  Ke3-e4,  Ke3-d4,  Ke3-d3
}
