UTF-8


1 #5
{
	Description: King and rook against king: the Answer names one of five keys
	FEN: 8/8/8/8/8/4K3/2R5/k7
	Answer:  Ke3-e2
}
