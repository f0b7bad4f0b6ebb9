# Puts page.html, its style and its scripts together and writes them as HtmlPage.cpp, cut in two where the data goes.
#
#   cmake -D OUTPUT=HtmlPage.cpp -P embed.cmake
#
# The page allows exactly this style and this script, by their hashes: nothing else in it, and nothing from elsewhere, can run.

# base64_of_hex(VARIABLE HEX): base64 of bytes given in hexadecimal digits.
function(base64_of_hex variable hex)
  set(alphabet "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/")
  set(text "")
  string(LENGTH "${hex}" digits)
  math(EXPR last "${digits} - 1")
  foreach(at RANGE 0 ${last} 6)
    string(SUBSTRING "${hex}" ${at} 6 group)
    string(LENGTH "${group}" length)
    math(EXPR characters "(${length} * 4 + 5) / 6")
    string(SUBSTRING "${group}00000" 0 6 group)
    set(shift 18)
    foreach(i RANGE 1 ${characters})
      math(EXPR index "(0x${group} >> ${shift}) & 63")
      string(SUBSTRING "${alphabet}" ${index} 1 character)
      string(APPEND text ${character})
      math(EXPR shift "${shift} - 6")
    endforeach()
    math(EXPR missing "4 - ${characters}")
    string(REPEAT "=" ${missing} padding)
    string(APPEND text "${padding}")
  endforeach()
  set(${variable} ${text} PARENT_SCOPE)
endfunction()

function(read_files variable)
  set(text "")
  foreach(name ${ARGN})
    file(READ "${CMAKE_CURRENT_LIST_DIR}/${name}" piece)
    string(APPEND text "${piece}")
  endforeach()
  set(${variable} "${text}" PARENT_SCOPE)
endfunction()

read_files(page page.html)
read_files(style page.css)
read_files(script data.js simplify.js marks.js map.js pointer.js profiles.js tables.js page.js)

foreach(part style script)
  string(SHA256 hash "${${part}}")
  base64_of_hex(hash "${hash}")
  string(REPLACE "{{${part}-hash}}" "sha256-${hash}" page "${page}")
  string(REPLACE "{{${part}}}" "${${part}}" page "${page}")
endforeach()

string(FIND "${page}" "{{data}}" cut)
string(SUBSTRING "${page}" 0 ${cut} head)
math(EXPR cut "${cut} + 8")
string(SUBSTRING "${page}" ${cut} -1 foot)

file(WRITE "${OUTPUT}" "// Made from host/page/ by embed.cmake.

#include \"host/page/HtmlPage.h\"

namespace host {

std::string_view pageHead() noexcept
{
    return R\"PAGE(${head})PAGE\";
}

std::string_view pageFoot() noexcept
{
    return R\"PAGE(${foot})PAGE\";
}

} // namespace host
")
