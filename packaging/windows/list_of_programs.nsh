; The entry in the list of installed programs, which also has the folder of the installation.

!define UNINSTALL_KEY Software\Microsoft\Windows\CurrentVersion\Uninstall\${PRODUCT}

; Setups of both bitnesses use the same list of installed programs.
!macro UseNativeRegistry
  !if ${NSIS_PTR_SIZE} > 4
    SetRegView 64
  !else
    ${If} ${RunningX64}
      SetRegView 64
    ${EndIf}
  !endif
!macroend

; The canonical name of an installation's folder; empty if the folder does not exist.
!macro ReadInstallLocation VARIABLE HIVE
  ReadRegStr ${VARIABLE} ${HIVE} "${UNINSTALL_KEY}" InstallLocation
  GetFullPathName /SHORT ${VARIABLE} ${VARIABLE}
!macroend

; Sets the error flag on failure.
!macro WriteUninstallKey
  WriteRegStr SHCTX "${UNINSTALL_KEY}" DisplayName "${PRODUCT}"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" DisplayVersion "${VERSION}"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" Publisher "${PRODUCT}"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" InstallLocation "$INSTDIR"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" UninstallString '"$INSTDIR\uninstall.exe"'
  WriteRegStr SHCTX "${UNINSTALL_KEY}" QuietUninstallString '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" NoModify 1
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" NoRepair 1
  ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" EstimatedSize $0
!macroend
