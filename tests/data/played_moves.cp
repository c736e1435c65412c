UTF-8


1 #3
{
	Description: A line played from the diagram; the solve still takes the diagram
	FEN: 8/8/8/8/8/2K5/1R6/k7
   Moves:     Rb2-h2 Ka1-b1
	Answer:  Rb2-b3,  Rb2-c2
}
