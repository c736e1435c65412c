UTF-8


1 #6
{
	Description: King and rook against king from the middle: eleven keys, and the register at work
	FEN: 8/8/8/8/8/4K3/2R5/k7
	Answer:  Rc2-d2,  Rc2-e2,  Rc2-f2,  Rc2-g2,  Rc2-h2,  Ke3-e2,  Ke3-d2,  Ke3-e4,  Ke3-d4,  Ke3-d3,  Rc2-c3
}

2 #7
{
	Description: King and rook against a central king: seven moves are not enough
	FEN: 8/8/8/8/3k4/8/8/R3K3
	Answer: 
}

3 #6
{
	Description: King and queen against a central king: six moves are not enough
	FEN: 8/8/8/3k4/8/8/8/Q3K3
	Answer: 
}

4 #7
{
	Description: The two bishops against a king near the corner: not in seven
	FEN: 8/8/8/8/8/2k5/8/2BBK3
	Answer: 
}

5 #8
{
	Description: King and rook against a king in the centre: not in eight
	FEN: 8/8/8/8/3k4/8/8/R3K3
	Answer: 
}
