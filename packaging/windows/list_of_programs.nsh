; The entry in the list of installed programs, which also tells where the installation is.

!define UNINSTALL_KEY Software\Microsoft\Windows\CurrentVersion\Uninstall\${PRODUCT}

; One list of installed programs, whatever bitness the setup has.
!macro UseNativeRegistry
  !if ${NSIS_PTR_SIZE} > 4
    SetRegView 64
  !else
    ${If} ${RunningX64}
      SetRegView 64
    ${EndIf}
  !endif
!macroend

; The folder of an installation, under the one of its names that all others lead to; empty when there is no such folder.
!macro ReadInstallLocation VARIABLE HIVE
  ReadRegStr ${VARIABLE} ${HIVE} "${UNINSTALL_KEY}" InstallLocation
  GetFullPathName /SHORT ${VARIABLE} ${VARIABLE}
!macroend

; The error flag tells whether it failed.
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
