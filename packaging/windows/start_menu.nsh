; The folder of the Start menu: the user's own or that of all users. Existing shortcuts are kept in $PLUGINSDIR\menu, and
; put back if the installation fails.

!define MENU "$SMPROGRAMS\${PRODUCT}"

!macro ForEachShortcut ACTION
  !insertmacro ${ACTION} "${PRODUCT} documents" "$INSTDIR\doc\index.html"
  !insertmacro ${ACTION} "${PRODUCT} samples" "$INSTDIR\doc\examples"
  !insertmacro ${ACTION} "Uninstall ${PRODUCT}" "$INSTDIR\uninstall.exe"
!macroend

!macro KeepShortcut NAME TARGET
  ${If} ${FileExists} "${MENU}\${NAME}.lnk"
    CopyFiles /SILENT "${MENU}\${NAME}.lnk" "$PLUGINSDIR\menu"
  ${EndIf}
!macroend

; Sets the error flag on failure; nothing is changed so far.
!macro KeepMenu
  ClearErrors
  ${If} ${FileExists} "${MENU}\*.*"
    CreateDirectory "$PLUGINSDIR\menu"
    !insertmacro ForEachShortcut KeepShortcut
  ${EndIf}
!macroend

!macro WriteShortcut NAME TARGET
  CreateShortcut "${MENU}\${NAME}.lnk" "${TARGET}"
!macroend

; Sets the error flag on failure.
!macro WriteMenu
  ClearErrors
  CreateDirectory "${MENU}"
  SetOutPath "$INSTDIR"  ; the shortcuts' folder to start in
  !insertmacro ForEachShortcut WriteShortcut
!macroend

!macro PutBackShortcut NAME TARGET
  ${If} ${FileExists} "$PLUGINSDIR\menu\${NAME}.lnk"
    CopyFiles /SILENT "$PLUGINSDIR\menu\${NAME}.lnk" "${MENU}"
  ${Else}
    Delete "${MENU}\${NAME}.lnk"
  ${EndIf}
!macroend

!macro PutBackMenu
  !insertmacro ForEachShortcut PutBackShortcut
  ${IfNot} ${FileExists} "$PLUGINSDIR\menu\*.*"
    RMDir "${MENU}"
  ${EndIf}
!macroend

!macro RemoveShortcut NAME TARGET
  Delete "${MENU}\${NAME}.lnk"
!macroend

; Removes only the setup's shortcuts: a folder with others stays.
!macro RemoveMenu
  !insertmacro ForEachShortcut RemoveShortcut
  RMDir "${MENU}"
!macroend
