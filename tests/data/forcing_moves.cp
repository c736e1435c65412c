UTF-8

1 #4 SH_FINDFORCEDMATE ( CheckOnly )
{
	Description: Two rooks: the king is cut off and driven by checks
	FEN: 8/8/8/7k/8/R7/1R6/2K5
}
