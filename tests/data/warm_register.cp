UTF-8

1 #6
{
	Description: King and rook against king: a second solve comes from the register
	FEN: 8/8/8/8/8/4K3/2R5/k7
}
