# Part of `cmake --install`, before anything is copied: everything is built, each folder can be
# written to, and there is room. Otherwise an installation would end with a part of the files
# copied.
#
# built    the files that the build makes
# folders  where files are copied to, below the prefix

foreach(file IN LISTS built)
  if(NOT EXISTS ${file})
    message(FATAL_ERROR "Nothing was installed, because the build is not complete: ${file} is "
      "missing. Build first: ./run, or cmake --build --preset release.")
  endif()
endforeach()

foreach(folder IN LISTS folders)
  set(folder $ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}/${folder})
  cmake_path(ABSOLUTE_PATH folder)
  while(NOT EXISTS ${folder}) # it will be made in the nearest one that exists
    cmake_path(GET folder PARENT_PATH folder)
  endwhile()
  execute_process(COMMAND test -d ${folder} -a -w ${folder} RESULT_VARIABLE status)
  if(status)
    message(FATAL_ERROR "Nothing was installed, because you may not write to ${folder}. Install "
      "with sudo, or into another folder with --prefix.")
  endif()
  set(place ${folder})
endforeach()

# What is built is most of what is copied. The last folder is as good as any: they are on one disk.
execute_process(COMMAND du --bytes --summarize --total ${built} COMMAND tail -n 1
  OUTPUT_VARIABLE needed)
execute_process(COMMAND df --block-size=1 --output=avail ${place} COMMAND tail -n 1
  OUTPUT_VARIABLE room)
string(REGEX MATCH "[0-9]+" needed "${needed}")
string(STRIP "${room}" room)
if(room LESS needed)
  message(FATAL_ERROR "Nothing was installed, because the files need ${needed} bytes and the disk "
    "of ${place} has ${room} left. Free some, or install into another folder with --prefix.")
endif()
