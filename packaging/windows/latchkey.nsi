; The installer: the component and the command latchkey, of both bitnesses, the documents and samples, and a folder of
; the Start menu, for all users or for one. PATH is not changed.
;
;   setup.exe [/S] [/AllUsers | /CurrentUser] [/D=FOLDER]     /S runs without questions; /D must be last, without quotation marks
;   FOLDER\uninstall.exe [/S]
;
; Administrators install for all users by default, others for themselves, which needs no further rights. The exit status
; is 0 for success, 1 for cancelled, 2 for failed; a failed installation leaves everything as it was before.
;
; tools/make_installer compiles this file with
;   VERSION     1.0.0
;   TARGET      x86-unicode, a setup for every Windows, or amd64-unicode for those that run no 32-bit programs
;   PRODUCTS    folder of LICENSE.txt, of x86 and x64, each with the files of one bitness, of doc, the documents as a
;               site, and of documents.nsh, which lists its files and folders
;   OUTPUT      file to write

Unicode true
Target ${TARGET}
SetCompressor /SOLID lzma
PESubsysVer 6.1  ; Windows 7: the loader of an older one refuses it
ManifestSupportedOS all
AllowSkipFiles off  ; a file that is in use ends the installation

!define PRODUCT Latchkey
!include list_of_programs.nsh

; "Highest" means the rights of the user's account: a prompt for administrators, none for others.
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
VIAddVersionKey LegalCopyright "Copyright 2026 the Latchkey authors. MIT License."

!insertmacro MULTIUSER_PAGE_INSTALLMODE
!define MUI_PAGE_CUSTOMFUNCTION_LEAVE RefuseFolder
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE English

!include "${PRODUCTS}/documents.nsh"
!include files.nsh
!include registration.nsh
!include start_menu.nsh

Var FilesChanged  ; yes as soon as an installation changes them, until it is undone
Var RegistrationChanged
Var MenuChanged
Var EntryChanged
Var EntryBefore  ; the folder that the list of installed programs names before, or nothing
Var FailedStep  ; what could not be done

; /AllUsers without the rights for it: MultiUser's message box would wait for an answer without a user.
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

!macro WriteBitness BITS FOLDER
  ${If} $Registrar${BITS} != ""
    !insertmacro WriteProducts ${FOLDER}
  ${EndIf}
!macroend

!macro FailIfErrors STEP
  ${If} ${Errors}
    StrCpy $FailedStep "${STEP}"
    Call Fail
  ${EndIf}
!macroend

!macro RegisterBitness BITS FOLDER
  ${If} $Registrar${BITS} != ""
    !insertmacro RunRegistrar ${BITS} "" "$INSTDIR\${FOLDER}\latchkey.dll"
    !insertmacro FailIfErrors "register $INSTDIR\${FOLDER}\latchkey.dll"
  ${EndIf}
!macroend

!macro UnregisterBitness BITS FOLDER
  ${If} $Registrar${BITS} != ""
    !insertmacro RunRegistrar ${BITS} "/u" "$INSTDIR\${FOLDER}\latchkey.dll"
  ${EndIf}
!macroend

; The uninstaller contains the DLL and first puts it back, in case it is missing or damaged: unregistering requires it.
; A DLL that is in use is complete, and stays.
!macro UnregisterInstalled BITS FOLDER
  ${If} $Registrar${BITS} != ""
    SetOutPath "$INSTDIR\${FOLDER}"
    SetOverwrite try
    !insertmacro WriteFile ${FOLDER} latchkey.dll
    SetOverwrite lastused
    SetOutPath "$TEMP"  ; a folder cannot be removed while it is the current one
    !insertmacro UnregisterBitness ${BITS} ${FOLDER}
    ${If} ${Errors}
      StrCpy $FailedStep "unregister $INSTDIR\${FOLDER}\latchkey.dll"
      MessageBox MB_OK|MB_ICONSTOP "Cannot $FailedStep. No file is removed, so that it can be tried again." /SD IDOK
      Abort "Cannot $FailedStep."
    ${EndIf}
  ${EndIf}
!macroend

; The install mode sets the folder, so a folder from the command line is set again after it.
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

; Leaves everything as it was before the installation.
Function Undo
  ${If} $RegistrationChanged == yes
    !insertmacro UnregisterBitness 64 x64
    !insertmacro UnregisterBitness 32 x86
  ${EndIf}
  ${If} $FilesChanged == yes
    !insertmacro PutBackFiles
  ${EndIf}
  ${If} $RegistrationChanged == yes
    !insertmacro PutBackRegistration 64
    !insertmacro PutBackRegistration 32
  ${EndIf}
  ${If} $MenuChanged == yes
    !insertmacro PutBackMenu
  ${EndIf}
  ${If} $EntryChanged == yes
  ${AndIf} $EntryBefore == ""
    DeleteRegKey SHCTX "${UNINSTALL_KEY}"
  ${EndIf}
  StrCpy $FilesChanged no
  StrCpy $RegistrationChanged no
  StrCpy $MenuChanged no
  StrCpy $EntryChanged no
FunctionEnd

Function Fail
  Call Undo
  MessageBox MB_OK|MB_ICONSTOP "Cannot $FailedStep. Everything is as it was before." /SD IDOK
  Abort "Cannot $FailedStep."
FunctionEnd

; Also runs if NSIS itself ends the installation, at a file that it cannot write.
Function .onInstFailed
  Call Undo
FunctionEnd

; Each mode has one entry in the list of installed programs, and each folder one uninstaller: an installation hidden by
; a second one could not be removed. Here Abort keeps the page of the folder, or ends the installation.
Function RefuseFolder
  !insertmacro ReadInstallLocation $0 SHCTX
  ${If} $MultiUser.InstallMode == CurrentUser
    !insertmacro ReadInstallLocation $1 HKLM
  ${Else}
    !insertmacro ReadInstallLocation $1 HKCU
  ${EndIf}
  GetFullPathName /SHORT $2 $INSTDIR
  ${If} $0 != ""
  ${AndIf} $0 != $2
    ReadRegStr $0 SHCTX "${UNINSTALL_KEY}" InstallLocation
    MessageBox MB_OK|MB_ICONSTOP "${PRODUCT} is installed in $0. Install it there, or remove it first." /SD IDOK
    Abort
  ${EndIf}
  ${If} $1 != ""
  ${AndIf} $1 == $2
    MessageBox MB_OK|MB_ICONSTOP "Another installation of ${PRODUCT} is in $INSTDIR. Take another folder." /SD IDOK
    Abort
  ${EndIf}
FunctionEnd

; Registration follows all files, so that a file in use, the commonest failure, does not affect it. The list of
; installed programs is written last, so that a failure to write it loses no old entry.
Section
  Call RefuseFolder
  !insertmacro SetForUser
  ReadRegStr $EntryBefore SHCTX "${UNINSTALL_KEY}" InstallLocation
  !insertmacro KeepRegistration 64
  !insertmacro KeepRegistration 32
  !insertmacro KeepFiles
  !insertmacro FailIfErrors "keep the files in $INSTDIR for the case of a failure"
  !insertmacro KeepMenu
  !insertmacro FailIfErrors "keep the shortcuts in ${MENU} for the case of a failure"

  StrCpy $FilesChanged yes
  !insertmacro WriteBitness 64 x64
  !insertmacro WriteBitness 32 x86
  !insertmacro WriteDocuments
  SetOutPath "$INSTDIR"
  !insertmacro WriteFile . LICENSE.txt
  ClearErrors
  WriteUninstaller "$INSTDIR\uninstall.exe"
  !insertmacro FailIfErrors "write $INSTDIR\uninstall.exe"

  StrCpy $RegistrationChanged yes
  !insertmacro RegisterBitness 64 x64
  !insertmacro RegisterBitness 32 x86

  StrCpy $MenuChanged yes
  !insertmacro WriteMenu
  !insertmacro FailIfErrors "write the shortcuts in ${MENU}"

  StrCpy $EntryChanged yes
  ClearErrors
  !insertmacro WriteUninstallKey
  !insertmacro FailIfErrors "enter ${PRODUCT} in the list of installed programs"
  !insertmacro RemoveOldDocuments
SectionEnd

; Removes the installation in this folder: a user's or the machine's. The install mode reads the folder from the list of
; installed programs, so the folder is set again after it.
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

; A DLL that is still registered stays, with its files and its entry.
Section Uninstall
  !insertmacro SetForUser
  !insertmacro UnregisterInstalled 64 x64
  !insertmacro UnregisterInstalled 32 x86
  DeleteRegKey SHCTX "${UNINSTALL_KEY}"
  !insertmacro RemoveMenu
  !insertmacro RemoveFiles
SectionEnd
