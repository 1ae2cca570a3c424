Attribute VB_Name = "EncryptText"
' Encrypts a text and decrypts it again, from Excel, Word or Access. Needs the registered DLL of Office's bitness and a
' reference to it (Tools, References, "Latchkey 1.0").
'
' Store the whole array that Encrypted returns and pass the whole array to Decrypted: its last element is not data, and
' the component ignores it. A ciphertext from another system needs one element more (ReDim Preserve).
'
' This project's tests have no Office: they run this module as VBScript, without its types.
Option Explicit

Private Const EndMark As String = "~lkend~"        ' without its digit, see "Storing a ciphertext" in docs/reference.md

Private Main As Latchkey.clsMain
Private Api As Latchkey.clsCryptoAPI

Public Sub ShowRoundTrip()
    Dim Ciphertext() As Byte
    Ciphertext = Encrypted("attack at dawn", "a secret")
    Debug.Print Decrypted(Ciphertext, "a secret")
End Sub

' InputData loses spaces at the end. The end mark keeps those of the text. Its digit is the first with which the
' ciphertext does not end in the code of a space.
Public Function Encrypted(Text As String, Password As String) As Byte()
    Dim Digit As Integer, Marked As String, Bytes() As Byte
    Prepare Password
    For Digit = 0 To 9
        Marked = Text & EndMark & Digit
        Bytes = Api.StringToByteArray(Marked)
        If Api.ByteArrayToString(Bytes) <> Marked Then Refuse "a character is not in the system's code page"
        Api.InputData = Bytes
        If Not Api.Encrypt(latchkeyHashSHA1, latchkeyCipher3DES) Then RaiseFailure
        Bytes = Api.OutputData
        If Len(Api.ByteArrayToString(Bytes)) = UBound(Bytes) Then
            Encrypted = Bytes
            Exit Function
        End If
    Next
    Refuse "no ciphertext that can be stored"
End Function

Public Function Decrypted(Ciphertext() As Byte, Password As String) As String
    Dim Bytes() As Byte
    Prepare Password
    Api.InputData = Ciphertext
    If Not Api.Decrypt(latchkeyHashSHA1, latchkeyCipher3DES) Then RaiseFailure
    Bytes = Api.OutputData
    Decrypted = WithoutEndMark(Api.ByteArrayToString(Bytes))
End Function

' Data without a mark is returned unchanged.
Private Function WithoutEndMark(Text As String) As String
    WithoutEndMark = Text
    If Left(Right(Text, 8), 7) = EndMark And InStr("0123456789", Right(Text, 1)) > 0 Then
        WithoutEndMark = Left(Text, Len(Text) - 8)
    End If
End Function

Private Sub Prepare(Password As String)
    Dim Secret() As Byte
    If Main Is Nothing Then                        ' one on each thread: without it the thread has no error record
        Set Main = New Latchkey.clsMain            ' first: makes the error record
        Set Api = New Latchkey.clsCryptoAPI
        Api.EnhancedProvider = True                ' before the first operation; 3DES needs it
    End If
    Secret = Api.StringToByteArray(Password)
    If RTrim(Api.ByteArrayToString(Secret)) <> RTrim(Password) Then
        Refuse "a character of the password is not in the system's code page"
    End If
    Api.Password = Secret                          ' erases Secret
End Sub

' No operation raises an error by itself: its result shows the failure, and the record has the reason.
Private Sub RaiseFailure()
    If Main.ErrorType = latchkeyErrorRunTime Then
        Err.Raise vbObjectError + Main.ErrorLocationID, "Latchkey", Main.RTErrorDescription
    End If
    Err.Raise vbObjectError + Main.ErrorLocationID, "Latchkey", Main.AppErrorDescription
End Sub

Private Sub Refuse(Reason As String)
    Err.Raise vbObjectError, "EncryptText", Reason
End Sub
