UTF-8


1 #9
{
	Description: The opening position: no mate in nine, and a long way to prove it
	FEN: rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR
}
