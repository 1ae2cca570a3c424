; Registration by the system's regsvr32 of each bitness: BITS is 64 or 32.

!define MAIN_SERVER_KEY Software\Classes\CLSID\{3D47BC99-A2AC-4DA2-B56E-B751FC9219E1}\InprocServer32

Var Registrar32  ; the path of regsvr32; empty where the system does not run that bitness
Var Registrar64
Var DllBefore32  ; what is registered before an installation, or nothing
Var DllBefore64
Var ForUser  ; the options for a registration of the user's own, or nothing

; A setup finds the system folder of its bitness under the usual name, and the other one under a special name.
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

!macro SetForUser
  StrCpy $ForUser ""
  ${If} $MultiUser.InstallMode == CurrentUser
    StrCpy $ForUser "/n /i:user"
  ${EndIf}
!macroend

; Sets the error flag on failure.
!macro RunRegistrar BITS OPTIONS DLL
  ClearErrors
  ExecWait '"$Registrar${BITS}" /s ${OPTIONS} $ForUser "${DLL}"' $0
  ${If} $0 <> 0
    SetErrors
  ${EndIf}
!macroend

!macro KeepRegistration BITS
  ${If} $Registrar${BITS} != ""
    SetRegView ${BITS}
    ReadRegStr $DllBefore${BITS} SHCTX "${MAIN_SERVER_KEY}" ""
    SetRegView lastused
  ${EndIf}
!macroend

!macro PutBackRegistration BITS
  ${If} $DllBefore${BITS} != ""
    !insertmacro RunRegistrar ${BITS} "" "$DllBefore${BITS}"
  ${EndIf}
!macroend
