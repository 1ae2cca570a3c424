' Encrypts a file under a password, writes the ciphertext as hexadecimal text, reads it back and
' decrypts it, and shows what the error record says after a wrong password.
'
'   set LATCHKEY_PASSWORD=correct horse
'   cscript //nologo encrypt_file.vbs FILE [CIPHERTEXT]
'
' CIPHERTEXT defaults to FILE.latchkey.hex. Under a 64-bit Windows the script host of the same
' bitness as the registered DLL is needed: %windir%\SysWOW64\cscript.exe is the 32-bit one.
Option Explicit

Const MD5 = 1, SHA1 = 4            ' hash numbers: 1 MD5, 2 MD4, 3 MD2, 4 SHA-1
Const TRIPLE_DES = 4               ' cipher numbers: 1 RC4, 2 RC2, 3 DES, 4 3DES, 5 two-key 3DES
Const BLOCK = 8                    ' bytes in a block of 3DES
Const MARK_LENGTH = 4              ' characters that mark the end of the content, see Encrypt

Dim files, main, api, path, cipherPath, content, cipherText, decrypted
Set files = CreateObject("Scripting.FileSystemObject")

If WScript.Arguments.Count < 1 Or WScript.Arguments.Count > 2 Or Password() = "" Then
    WScript.Echo "usage: set LATCHKEY_PASSWORD, then cscript //nologo encrypt_file.vbs FILE [CIPHERTEXT]"
    WScript.Quit 2
End If
path = WScript.Arguments(0)
cipherPath = path & ".latchkey.hex"
If WScript.Arguments.Count = 2 Then cipherPath = WScript.Arguments(1)
If Not files.FileExists(path) Then
    WScript.Echo "there is no file " & path
    WScript.Quit 1
End If

Set main = CreateObject("Latchkey.clsMain")         ' first: makes the error record of this thread
Set api = CreateObject("Latchkey.clsCryptoAPI")
api.EnhancedProvider = True                         ' before the first operation; 3DES needs it

content = ReadFile(path)
WScript.Echo "file        " & path & ", " & Len(content) & " bytes"
WScript.Echo "MD5         " & LCase(api.CreateHash(content, MD5, True))
WScript.Echo "SHA-1       " & LCase(api.CreateHash(content, SHA1, True))

UsePassword Password()
cipherText = Encrypt(content)
WriteFile cipherPath, api.ConvertStringToHex(cipherText)
WScript.Echo "ciphertext  " & cipherPath & ", " & Len(cipherText) & " bytes, 3DES under MD5 of the password"

decrypted = Decrypt(api.ConvertStringFromHex(ReadFile(cipherPath)))
If decrypted <> content Then
    WScript.Echo "the decrypted content differs from the file"
    WScript.Quit 1
End If
WScript.Echo "decrypted   " & Len(decrypted) & " bytes, the same as the file"

TryWrongPasswords api.ConvertStringFromHex(ReadFile(cipherPath))
WScript.Echo "done"

' ---------------------------------------------------------------------------------------------

' An environment variable: a command line could be read by everyone on the machine.
Function Password()
    Dim shell
    Set shell = CreateObject("WScript.Shell")
    Password = shell.Environment("PROCESS")("LATCHKEY_PASSWORD")
End Function

' The property takes a byte array and erases the variable that it comes from.
Sub UsePassword(text)
    Dim bytes
    bytes = api.StringToByteArray(text)
    api.Password = bytes
End Sub

' What is encrypted gets a mark of four characters behind it. The component drops spaces at the end
' of whatever it takes in, so the mark keeps those of the content; and a block cipher refuses fewer
' than four bytes. A ciphertext that ended in the code of a space could not be read back: where that
' happens, another mark is tried.
Function Encrypt(text)
    Dim mark
    For Each mark In Array("end|", "end!", "end#", "end$", "end%", "end&", "end*", "end+")
        api.InputData = api.StringToByteArray(text & mark)
        If Not api.Encrypt(MD5, TRIPLE_DES) Then GiveUp
        Encrypt = api.ByteArrayToString(api.OutputData)
        If Len(Encrypt) = (Len(text & mark) \ BLOCK + 1) * BLOCK Then Exit Function
    Next
    WScript.Echo "no ciphertext that can be read back"
    WScript.Quit 1
End Function

Function Decrypt(text)
    Dim marked
    api.InputData = api.StringToByteArray(text)
    If Not api.Decrypt(MD5, TRIPLE_DES) Then GiveUp
    marked = api.ByteArrayToString(api.OutputData)
    Decrypt = Left(marked, Len(marked) - MARK_LENGTH)
End Function

' A wrong password shows at the end of the last block, where about one in 256 passes unseen.
Sub TryWrongPasswords(text)
    Dim wrong
    api.InputData = api.StringToByteArray(text)
    For Each wrong In Array("wrong password", "another wrong one", "and a third")
        UsePassword wrong
        If Not api.Decrypt(MD5, TRIPLE_DES) Then
            WScript.Echo "with the password """ & wrong & """ Decrypt returns False:"
            ShowErrorRecord
            Exit Sub
        End If
    Next
    WScript.Echo "no wrong password was noticed"
End Sub

' No operation raises an error: its result tells that it failed, and the record tells why.
Sub ShowErrorRecord()
    WScript.Echo "  ErrorExists          " & main.ErrorExists
    WScript.Echo "  ErrorType            " & main.ErrorType & "  (1 run-time failure, 2 found by the component)"
    WScript.Echo "  ErrorLocationID      " & main.ErrorLocationID
    WScript.Echo "  AppErrorNumber       " & main.AppErrorNumber
    WScript.Echo "  AppErrorDescription  " & main.AppErrorDescription
End Sub

Sub GiveUp()
    ShowErrorRecord
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
