; The installed files; ${PRODUCTS}/documents.nsh lists those of the folder doc. Existing files in their places are kept in $PLUGINSDIR\before, which is deleted when the setup
; ends, and put back if the installation fails. A folder that is kept there existed before.

Var FolderBefore  ; the folder to install in, or the nearest above it that there is

!macro ForEachProduct ACTION FOLDER
  !insertmacro ${ACTION} ${FOLDER} latchkey.dll
  !insertmacro ${ACTION} ${FOLDER} latchkey.exe
  !insertmacro ${ACTION} ${FOLDER} Latchkey.Component.manifest
!macroend

; A folder of that name cannot be replaced: the installation will fail there.
!macro KeepFile FOLDER NAME
  ${If} ${FileExists} "$INSTDIR\${FOLDER}\${NAME}"
  ${AndIfNot} ${FileExists} "$INSTDIR\${FOLDER}\${NAME}\*.*"
    CopyFiles /SILENT "$INSTDIR\${FOLDER}\${NAME}" "$PLUGINSDIR\before\${FOLDER}"
  ${EndIf}
!macroend

!macro KeepFolder FOLDER
  ${If} ${FileExists} "$INSTDIR\${FOLDER}\*.*"
    CreateDirectory "$PLUGINSDIR\before\${FOLDER}"
  ${EndIf}
!macroend

!macro KeepProducts FOLDER
  !insertmacro KeepFolder ${FOLDER}
  ${If} ${FileExists} "$INSTDIR\${FOLDER}\*.*"
    !insertmacro ForEachProduct KeepFile ${FOLDER}
  ${EndIf}
!macroend

; Sets the error flag on failure; nothing is changed so far.
!macro KeepFiles
  StrCpy $FolderBefore $INSTDIR
  ${DoUntil} ${FileExists} "$FolderBefore\*.*"
    ${GetParent} $FolderBefore $FolderBefore
  ${Loop}
  ClearErrors
  InitPluginsDir
  CreateDirectory "$PLUGINSDIR\before"
  !insertmacro KeepProducts x64
  !insertmacro KeepProducts x86
  !insertmacro ForEachFolderOfDocuments KeepFolder
  !insertmacro ForEachDocument KeepFile
  !insertmacro KeepFile . LICENSE.txt
  !insertmacro KeepFile . uninstall.exe
!macroend

!macro WriteFile FOLDER NAME
  File "${PRODUCTS}/${FOLDER}/${NAME}"
!macroend

; A file that cannot be written ends the installation.
!macro WriteProducts FOLDER
  SetOutPath "$INSTDIR\${FOLDER}"
  !insertmacro ForEachProduct WriteFile ${FOLDER}
!macroend

!macro WriteDocuments
  SetOutPath "$INSTDIR\doc"
  File /r "${PRODUCTS}/doc/*"
!macroend

; Leaves $3 empty if the list of this version does not have the line, which ends with its line end.
!macro FindDocument LINE
  FileOpen $2 "$INSTDIR\doc\files.txt" r
  ${Do}
    FileRead $2 $3  ; empty at the end of the file
    ${If} $3 == ${LINE}
      ${ExitDo}
    ${EndIf}
  ${LoopUntil} $3 == ""
  FileClose $2
!macroend

; And its folders, if nothing else is in them.
!macro RemoveOldDocument LINE
  StrCpy $2 ${LINE} -2  ; without the line end
  Delete /REBOOTOK "$INSTDIR\$2"
  ${GetParent} $2 $2
  ${DoUntil} $2 == ""
    RMDir "$INSTDIR\$2"
    ${GetParent} $2 $2
  ${Loop}
!macroend

; Removes documents of another version that this one does not have, by the list that the other one installed.
!macro RemoveOldDocuments
  ClearErrors
  FileOpen $0 "$PLUGINSDIR\before\doc\files.txt" r
  ${IfNot} ${Errors}
    FileRead $0 $1
    ${DoUntil} $1 == ""
      !insertmacro FindDocument $1
      ${If} $3 == ""
        !insertmacro RemoveOldDocument $1
      ${EndIf}
      FileRead $0 $1
    ${Loop}
    FileClose $0
  ${EndIf}
!macroend

!macro PutBackFile FOLDER NAME
  ${If} ${FileExists} "$PLUGINSDIR\before\${FOLDER}\${NAME}"
    CopyFiles /SILENT "$PLUGINSDIR\before\${FOLDER}\${NAME}" "$INSTDIR\${FOLDER}"
  ${Else}
    Delete /REBOOTOK "$INSTDIR\${FOLDER}\${NAME}"
  ${EndIf}
!macroend

!macro PutBackFolder FOLDER
  ${IfNot} ${FileExists} "$PLUGINSDIR\before\${FOLDER}\*.*"
    RMDir /REBOOTOK "$INSTDIR\${FOLDER}"
  ${EndIf}
!macroend

!macro PutBackProducts FOLDER
  !insertmacro ForEachProduct PutBackFile ${FOLDER}
  !insertmacro PutBackFolder ${FOLDER}
!macroend

!macro PutBackFiles
  SetOutPath "$TEMP"  ; a folder cannot be removed while it is the current one
  !insertmacro PutBackProducts x64
  !insertmacro PutBackProducts x86
  !insertmacro ForEachDocument PutBackFile
  !insertmacro ForEachFolderOfDocuments PutBackFolder
  !insertmacro PutBackFile . LICENSE.txt
  !insertmacro PutBackFile . uninstall.exe
  StrCpy $0 $INSTDIR
  ${DoUntil} $0 == $FolderBefore
    RMDir /REBOOTOK "$0"
    ${GetParent} $0 $0
  ${Loop}
!macroend

!macro RemoveFile FOLDER NAME
  Delete /REBOOTOK "$INSTDIR\${FOLDER}\${NAME}"
!macroend

!macro RemoveFolder FOLDER
  RMDir /REBOOTOK "$INSTDIR\${FOLDER}"
!macroend

!macro RemoveProducts FOLDER
  !insertmacro ForEachProduct RemoveFile ${FOLDER}
  !insertmacro RemoveFolder ${FOLDER}
!macroend

; Removes only installed files: a folder with other files stays.
!macro RemoveFiles
  !insertmacro RemoveProducts x64
  !insertmacro RemoveProducts x86
  !insertmacro ForEachDocument RemoveFile
  !insertmacro ForEachFolderOfDocuments RemoveFolder
  !insertmacro RemoveFile . LICENSE.txt
  !insertmacro RemoveFile . uninstall.exe
  RMDir /REBOOTOK "$INSTDIR"
!macroend
