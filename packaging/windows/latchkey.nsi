; The installer: the component and the command latchkey, of both bitnesses, for all users or for one.
;
;   setup.exe [/S] [/AllUsers | /CurrentUser] [/D=FOLDER]     /S asks nothing; /D comes last, without quotation marks
;   FOLDER\uninstall.exe [/S]
;
; An administrator installs for all users unless told otherwise, anyone else for himself, which takes no other rights
; than his own. Exit status 0 is done, 1 cancelled, 2 failed; what a failed installation has written is removed again.
;
; tools/make_installer compiles this file with
;   VERSION     1.0.0
;   TARGET      x86-unicode, a setup for every Windows, or amd64-unicode for those that run no 32-bit programs
;   PRODUCTS    folder of x86 and x64, each with the files of one bitness
;   OUTPUT      file to write

Unicode true
Target ${TARGET}
SetCompressor /SOLID lzma
ManifestSupportedOS all
AllowSkipFiles off  ; a file that is in use ends the installation

!define PRODUCT Latchkey
!define UNINSTALL_KEY Software\Microsoft\Windows\CurrentVersion\Uninstall\${PRODUCT}

; "Highest" is what the user's account has: a prompt for administrators, none for others.
!define MULTIUSER_EXECUTIONLEVEL Highest
!define MULTIUSER_MUI
!define MULTIUSER_INSTALLMODE_COMMANDLINE
!define MULTIUSER_INSTALLMODE_INSTDIR ${PRODUCT}
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_KEY ${UNINSTALL_KEY}
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_VALUENAME InstallLocation
!define MULTIUSER_USE_PROGRAMFILES64  ; the same folder as PROGRAMFILES where Windows has 32 bits
!include MultiUser.nsh
!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh
!include x64.nsh

Name "${PRODUCT} ${VERSION}"
OutFile "${OUTPUT}"
BrandingText " "
VIProductVersion ${VERSION}.0
VIAddVersionKey ProductName ${PRODUCT}
VIAddVersionKey ProductVersion ${VERSION}
VIAddVersionKey FileVersion ${VERSION}
VIAddVersionKey FileDescription "${PRODUCT} setup"
VIAddVersionKey CompanyName ${PRODUCT}
VIAddVersionKey LegalCopyright ""

!insertmacro MULTIUSER_PAGE_INSTALLMODE
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE English

Var Registrar32  ; the system's regsvr32 of each bitness; empty where the system does not run that bitness
Var Registrar64
Var ForUser  ; its options for a registration of the user's own, or nothing
Var FailedStep  ; what could not be done, or nothing

; A setup sees the system folder of its own bitness under one name and the other under a special one.
!macro FindRegistrars
  !if ${NSIS_PTR_SIZE} > 4
    StrCpy $Registrar32 "$WINDIR\SysWOW64\regsvr32.exe"
    StrCpy $Registrar64 "$SYSDIR\regsvr32.exe"
  !else
    StrCpy $Registrar32 "$SYSDIR\regsvr32.exe"
    StrCpy $Registrar64 "$WINDIR\Sysnative\regsvr32.exe"
  !endif
  ${IfNot} ${FileExists} $Registrar32
    StrCpy $Registrar32 ""
  ${EndIf}
  ${IfNot} ${FileExists} $Registrar64
  ${OrIfNot} ${IsNativeAMD64}
    StrCpy $Registrar64 ""
  ${EndIf}
!macroend

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

; /AllUsers without the rights for it: MultiUser's message would wait for an answer that nobody gives.
!macro RefuseSilently
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/AllUsers" $1
  ${IfNot} ${Errors}
  ${AndIf} ${Silent}
    UserInfo::GetAccountType
    Pop $0
    ${If} $0 != Admin
    ${AndIf} $0 != Power
      SetErrorLevel 2
      Quit
    ${EndIf}
  ${EndIf}
!macroend

!macro SetForUser
  StrCpy $ForUser ""
  ${If} $MultiUser.InstallMode == CurrentUser
    StrCpy $ForUser "/n /i:user"
  ${EndIf}
!macroend

; The folder of an installation, under the one of its names that all others lead to; empty when there is no such folder.
!macro ReadInstallLocation VARIABLE HIVE
  ReadRegStr ${VARIABLE} ${HIVE} "${UNINSTALL_KEY}" InstallLocation
  GetFullPathName /SHORT ${VARIABLE} ${VARIABLE}
!macroend

!macro InstallBitness REGISTRAR FOLDER
  ${If} ${REGISTRAR} != ""
  ${AndIf} $FailedStep == ""
    SetOutPath "$INSTDIR\${FOLDER}"
    File "${PRODUCTS}/${FOLDER}/latchkey.dll"
    File "${PRODUCTS}/${FOLDER}/latchkey.exe"
    File "${PRODUCTS}/${FOLDER}/Latchkey.Component.manifest"
    ClearErrors
    ExecWait '"${REGISTRAR}" /s $ForUser "$INSTDIR\${FOLDER}\latchkey.dll"' $0
    ${If} ${Errors}
    ${OrIf} $0 <> 0
      StrCpy $FailedStep "register $INSTDIR\${FOLDER}\latchkey.dll"
    ${EndIf}
  ${EndIf}
!macroend

!macro RemoveBitness REGISTRAR FOLDER
  ${If} ${REGISTRAR} != ""
  ${AndIf} ${FileExists} "$INSTDIR\${FOLDER}\latchkey.dll"
    ClearErrors
    ExecWait '"${REGISTRAR}" /s /u $ForUser "$INSTDIR\${FOLDER}\latchkey.dll"' $0
    ${If} ${Errors}
    ${OrIf} $0 <> 0
      StrCpy $FailedStep "unregister $INSTDIR\${FOLDER}\latchkey.dll"
    ${EndIf}
  ${EndIf}
  Delete /REBOOTOK "$INSTDIR\${FOLDER}\latchkey.dll"
  Delete /REBOOTOK "$INSTDIR\${FOLDER}\latchkey.exe"
  Delete /REBOOTOK "$INSTDIR\${FOLDER}\Latchkey.Component.manifest"
  RMDir /REBOOTOK "$INSTDIR\${FOLDER}"
!macroend

; Only what was installed: a folder with anything else in it stays.
!macro RemoveAll
  SetOutPath "$TEMP"  ; a folder cannot be removed while it is the current one
  DeleteRegKey SHCTX "${UNINSTALL_KEY}"
  !insertmacro RemoveBitness $Registrar64 x64
  !insertmacro RemoveBitness $Registrar32 x86
  Delete /REBOOTOK "$INSTDIR\uninstall.exe"
  RMDir /REBOOTOK "$INSTDIR"
!macroend

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

; The install mode sets the folder, so a folder from the command line is put back behind it.
Function .onInit
  !insertmacro UseNativeRegistry
  !insertmacro RefuseSilently
  StrCpy $9 $INSTDIR
  !insertmacro MULTIUSER_INIT
  ${If} $9 != ""
    StrCpy $INSTDIR $9
  ${EndIf}
  !insertmacro FindRegistrars
FunctionEnd

Section
  StrCpy $FailedStep ""
  !insertmacro SetForUser
  !insertmacro InstallBitness $Registrar64 x64
  !insertmacro InstallBitness $Registrar32 x86
  ${If} $FailedStep == ""
    WriteUninstaller "$INSTDIR\uninstall.exe"
    !insertmacro WriteUninstallKey
  ${Else}
    MessageBox MB_OK|MB_ICONSTOP "Cannot $FailedStep. Nothing is installed." /SD IDOK
    !insertmacro RemoveAll
    Abort "Cannot $FailedStep."
  ${EndIf}
SectionEnd

; What is removed is what was installed in this folder: a user's own installation or the machine's. The install mode
; takes the folder from the list of installed programs, so it is put back behind it.
Function un.onInit
  !insertmacro UseNativeRegistry
  StrCpy $8 $INSTDIR
  !insertmacro MULTIUSER_UNINIT
  !insertmacro ReadInstallLocation $0 HKCU
  !insertmacro ReadInstallLocation $1 HKLM
  GetFullPathName /SHORT $2 $8
  ${If} $0 == $2
    StrCpy $9 CurrentUser
    Call un.MultiUser.InstallMode.CurrentUser
  ${ElseIf} $1 == $2
    StrCpy $9 AllUsers
    Call un.MultiUser.InstallMode.AllUsers
  ${Else}
    MessageBox MB_OK|MB_ICONSTOP "${PRODUCT} is not installed in $8." /SD IDOK
    SetErrorLevel 2
    Quit
  ${EndIf}
  StrCpy $INSTDIR $8
  ${If} $MultiUser.InstallMode != $9
    MessageBox MB_OK|MB_ICONSTOP "Removing ${PRODUCT} for all users takes administrator rights." /SD IDOK
    SetErrorLevel 2
    Quit
  ${EndIf}
  !insertmacro FindRegistrars
FunctionEnd

Section Uninstall
  StrCpy $FailedStep ""
  !insertmacro SetForUser
  !insertmacro RemoveAll
  ${If} $FailedStep != ""
    MessageBox MB_OK|MB_ICONEXCLAMATION "Cannot $FailedStep." /SD IDOK
    SetErrorLevel 2
  ${EndIf}
SectionEnd
