$PMGNGEO,4627.33136,N,00756.55137,E,0001786,M,Spitzhorn Panorama,Bring a pencil,bergziege,under the third stone,Traditional,140508,110808,1.5,4*5F
$PMGNGEO,4627.05023,N,00755.27124,E,0001099,M,Alte Saege,,team murmeli,inside the wheel,Traditional,020607,,2,2*69
