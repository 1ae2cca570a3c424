' Encrypts a file under a password, writes the ciphertext as hexadecimal text, reads it back and
' decrypts it, and shows the error record after a wrong password.
'
'   set LATCHKEY_PASSWORD=correct horse
'   cscript //nologo encrypt_file.vbs FILE [CIPHERTEXT]
'
' CIPHERTEXT defaults to FILE.latchkey.hex. Under a 64-bit Windows the script host of the same
' bitness as the registered DLL is needed: %windir%\SysWOW64\cscript.exe is the 32-bit one.
Option Explicit

' The type library's numbers, whose names are not available to scripts.
Const latchkeyHashMD5 = 1, latchkeyHashSHA1 = 4
Const latchkeyCipher3DES = 4
Const latchkeyErrorRunTime = 1
Const BLOCK = 8                    ' bytes in a block of 3DES
Const END_MARK = "~lkend~"         ' the end mark without its digit, see "Storing a ciphertext" in docs/reference.md

Dim files, main, api, path, cipherPath, content, cipherText, decrypted
Set files = CreateObject("Scripting.FileSystemObject")

If WScript.Arguments.Count < 1 Or WScript.Arguments.Count > 2 Or Password() = "" Then
    WScript.Echo "usage: set LATCHKEY_PASSWORD, then cscript //nologo encrypt_file.vbs FILE [CIPHERTEXT]"
    WScript.Quit 2
End If
path = WScript.Arguments(0)
cipherPath = path & ".latchkey.hex"
If WScript.Arguments.Count = 2 Then cipherPath = WScript.Arguments(1)
If Not files.FileExists(path) Then StopWith "there is no file " & path

Set main = CreateObject("Latchkey.clsMain")         ' first: makes the error record of this thread
Set api = CreateObject("Latchkey.clsCryptoAPI")
api.EnhancedProvider = True                         ' before the first operation; 3DES needs it

content = ReadFile(path)
If Len(content) <> files.GetFile(path).Size Then StopWith "the system's code page has characters of several bytes"
WScript.Echo "file        " & path & ", " & Len(content) & " bytes"
WScript.Echo "MD5         " & LCase(api.CreateHash(content, latchkeyHashMD5, True))
WScript.Echo "SHA-1       " & LCase(api.CreateHash(content, latchkeyHashSHA1, True))

UsePassword Password()
cipherText = Encrypt(content)
WriteFile cipherPath, api.ConvertStringToHex(cipherText)
WScript.Echo "ciphertext  " & cipherPath & ", " & Len(cipherText) & " bytes, 3DES under MD5 of the password"

decrypted = Decrypt(api.ConvertStringFromHex(ReadFile(cipherPath)))
If decrypted <> content Then StopWith "the decrypted content differs from the file"
WScript.Echo "decrypted   " & Len(decrypted) & " bytes, the same as the file"

TryWrongPasswords api.ConvertStringFromHex(ReadFile(cipherPath))
WScript.Echo "done"

' ---------------------------------------------------------------------------------------------

' The password comes from an environment variable: other users could read a command line.
Function Password()
    Dim shell
    Set shell = CreateObject("WScript.Shell")
    Password = shell.Environment("PROCESS")("LATCHKEY_PASSWORD")
End Function

' The property requires a byte array and erases the caller's variable.
Sub UsePassword(text)
    Dim bytes
    bytes = api.StringToByteArray(text)
    If RTrim(api.ByteArrayToString(bytes)) <> RTrim(text) Then
        StopWith "a character of the password is not in the system's code page"
    End If
    api.Password = bytes
End Sub

' InputData and the conversions lose spaces at the end. The end mark keeps those of the content. Its
' digit is the first with which the ciphertext does not end in the code of a space.
Function Encrypt(text)
    Dim digit, marked, bytes
    For digit = 0 To 9
        marked = text & END_MARK & digit
        bytes = api.StringToByteArray(marked)
        If api.ByteArrayToString(bytes) <> marked Then StopWith "a character is not in the system's code page"
        api.InputData = bytes
        If Not api.Encrypt(latchkeyHashMD5, latchkeyCipher3DES) Then GiveUp
        Encrypt = api.ByteArrayToString(api.OutputData)
        If Len(Encrypt) = (Len(marked) \ BLOCK + 1) * BLOCK Then Exit Function
    Next
    StopWith "no ciphertext that can be stored"
End Function

Function Decrypt(text)
    api.InputData = api.StringToByteArray(text)
    If Not api.Decrypt(latchkeyHashMD5, latchkeyCipher3DES) Then GiveUp
    Decrypt = WithoutEndMark(api.ByteArrayToString(api.OutputData))
End Function

' Earlier versions wrote one of eight other marks. A text without a mark is returned unchanged.
Function WithoutEndMark(text)
    Dim mark
    WithoutEndMark = text
    For Each mark In Array("end|", "end!", "end#", "end$", "end%", "end&", "end*", "end+")
        If Right(text, 4) = mark Then WithoutEndMark = Left(text, Len(text) - 4)
    Next
    If Left(Right(text, 8), 7) = END_MARK And InStr("0123456789", Right(text, 1)) > 0 Then
        WithoutEndMark = Left(text, Len(text) - 8)
    End If
End Function

' The padding of the last block reveals a wrong password, except about one in 255.
Sub TryWrongPasswords(text)
    Dim wrong
    api.InputData = api.StringToByteArray(text)
    For Each wrong In Array("wrong password", "another wrong one", "and a third")
        UsePassword wrong
        If Not api.Decrypt(latchkeyHashMD5, latchkeyCipher3DES) Then
            WScript.Echo "with the password """ & wrong & """ Decrypt returns False:"
            ShowErrorRecord
            Exit Sub
        End If
    Next
    WScript.Echo "no wrong password was noticed"
End Sub

' No operation raises an error: its result shows the failure, and the record has the reason.
Sub ShowErrorRecord()
    WScript.Echo "  ErrorExists          " & main.ErrorExists
    WScript.Echo "  ErrorType            " & main.ErrorType & "  (1 run-time failure, 2 found by the component)"
    WScript.Echo "  ErrorLocationID      " & main.ErrorLocationID
    If main.ErrorType = latchkeyErrorRunTime Then
        WScript.Echo "  RTErrorNumber        " & main.RTErrorNumber
        WScript.Echo "  RTErrorDescription   " & main.RTErrorDescription
    Else
        WScript.Echo "  AppErrorNumber       " & main.AppErrorNumber
        WScript.Echo "  AppErrorDescription  " & main.AppErrorDescription
    End If
End Sub

Sub GiveUp()
    ShowErrorRecord
    WScript.Quit 1
End Sub

Sub StopWith(message)
    WScript.Echo message
    WScript.Quit 1
End Sub

' One character for each byte, through the system's single-byte code page, as the component sees it.
Function ReadFile(name)
    Const FOR_READING = 1, SINGLE_BYTES = 0
    Dim stream
    ReadFile = ""
    If files.GetFile(name).Size = 0 Then Exit Function
    Set stream = files.OpenTextFile(name, FOR_READING, False, SINGLE_BYTES)
    ReadFile = stream.ReadAll
    stream.Close
End Function

Sub WriteFile(name, text)
    Dim stream
    Set stream = files.CreateTextFile(name, True)
    stream.Write text
    stream.Close
End Sub
