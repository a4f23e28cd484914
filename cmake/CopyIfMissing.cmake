# cmake -DSRC=file -DDST=file -P CopyIfMissing.cmake: a user's file is never overwritten.
if(NOT EXISTS "${DST}")
    file(COPY_FILE "${SRC}" "${DST}")
endif()
