UTF-8


1 #16
{
	Description: King and rook against king from the centre, with castling: sixteen keys. With the tables of R every reply is read from them
	FEN: 8/8/8/3k4/8/8/8/R3K3
	Answer:  Ra1-a4,  Ra1-a6,  Ra1-c1,  Ra1-a5,  Ra1-d1,  0-0-0,  Ra1-a2,  Ra1-a3,  Ra1-a7,  Ra1-a8,  Ra1-b1,  Ke1-e2,  Ke1-d2,  Ke1-f2,  Ke1-d1,  Ke1-f1
}

2 #14
{
	Description: King and rook on h1 against king: three keys
	FEN: 8/8/8/2k5/8/8/8/4K2R
	Answer:  Rh1-h5,  Ke1-d2,  Ke1-f2
}

3 #8
{
	Description: King and queen against king: four keys
	FEN: 8/8/2k5/8/8/8/8/Q3K3
	Answer:  Qa1-d4,  Qa1-f6,  Ke1-e2,  Ke1-d2
}
