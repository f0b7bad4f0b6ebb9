$PMGNGEO,4627.33136,N,00756.55137,E,0001786,M,Spitzhorn Panorama,Bring a pencil,bergziege,under the third stone,Traditional,140508,110808,1.5,4*5F
$PMGNGEO,4627.05023,N,00755.27124,E,0001099,M,Alte Saege,,team murmeli,inside the wheel,Traditional,020607,,2,2*69
$PMGNGEO,4626.72486,N,00754.96353,E,0000935,M,Three Springs 1,Add the digits on the sign,bergziege,,Multi-cache,280209,,3.5,2.5*1D
$PMGNGEO,4626.08706,N,00754.77249,E,0000802,M,Station Mystery,Solve it at home,nachteule,not at the station,Mystery,,,4,1*0E
$PMGNGEO,4627.42363,N,00755.57972,E,0001290,M,Lautersee View,,nachteule,,Earthcache,170708,,2,3*35
$PMGNCMD,END*3D