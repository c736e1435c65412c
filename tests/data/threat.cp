UTF-8


1 #2
{
	Description: The king steps aside and the rook threatens the corner
	FEN: 7k/R7/5K2/8/8/8/8/8
	Answer:  Kf6-g6
}
