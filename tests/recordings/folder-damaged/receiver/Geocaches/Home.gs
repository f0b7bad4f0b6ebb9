$PMGNGEO,4626.72486,N,00754.96353,E,0000935,M,Three Springs 1,Add the digits on the sign,bergziege,,Multi-cache,280209,,3.5,2.5*1D
