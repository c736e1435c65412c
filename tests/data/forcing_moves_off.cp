UTF-8

1 #6
{
	Description: A long problem where White can threaten: forcing moves first
	FEN: 6k1/5ppp/8/8/8/8/5PPP/3Q2K1
}

2 #6 SH_FINDFORCEDMATE OFF
{
	Description: The same with the forcing moves switched off
	FEN: 6k1/5ppp/8/8/8/8/5PPP/3Q2K1
}
