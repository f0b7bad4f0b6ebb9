// SPDX-License-Identifier: MIT
// The tables of places and coasts, as constants of the program. PlaceTable.h and LandTable.h
// describe them.

    .section .rodata
    .balign 16
    .globl hostPlaces
    .hidden hostPlaces
hostPlaces:
    .incbin PLACES

    .balign 16
    .globl hostLand
    .hidden hostLand
hostLand:
    .incbin LAND

    .section .note.GNU-stack, "", %progbits
