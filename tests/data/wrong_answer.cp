UTF-8


1 #2
{
	FEN: 5k2/8/5K2/8/8/8/8/4R3
	Answer:  Ra1-a2
}
