// SPDX-License-Identifier: MIT
// The table of places, as constants of the program. PlaceTable.h describes it.

    .section .rodata
    .balign 16
    .globl hostPlaces
    .hidden hostPlaces
hostPlaces:
    .incbin PLACES

    .section .note.GNU-stack, "", %progbits
