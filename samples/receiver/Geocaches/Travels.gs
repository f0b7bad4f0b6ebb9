$PMGNGEO,4436.81377,N,12402.93931,W,0000030,M,Keeper's Window,,saltspray,look up,Traditional,210906,,1,1.5*50
$PMGNGEO,4437.04148,N,12403.01056,W,0000003,M,Tide Table,Check the tide first!,saltspray,above the high water mark,Traditional,050508,060508,2,3*61
$PMGNGEO,4437.01990,N,12402.37613,W,0000064,M,Quarry Bones,,rockhound61,rusty pipe,Multi-cache,,,2.5,3*47
$PMGNGEO,4436.85586,N,12401.67802,W,0000004,M,Harbor Lights,Stealth needed,The Petrels,magnetic,Traditional,301107,,1.5,1*10
$PMGNGEO,4440.72300,S,16909.16423,E,0001184,M,Kea Proof,Close the lid,tussock,heavy flat stone,Traditional,110109,,2.5,4.5*6C
$PMGNGEO,4439.77547,S,16908.37833,E,0000381,M,Swinging,,tussock,far side,Traditional,,,1.5,2*6D
$PMGNGEO,4439.60604,S,16908.90782,E,0000341,M,Taxi Rank,Boats only,Bluewater Crew,,Virtual,020210,030210,1,1.5*7A
$PMGNGEO,5100.89960,S,07305.45449,W,0000013,M,Lenga Shelter,,austral,third beam,Traditional,191208,,1.5,2*69
$PMGNGEO,5101.82015,S,07305.84828,W,0000001,M,The Boiler,Kayak needed,austral,,Traditional,,,2,5*3D
$PMGNCMD,END*3D