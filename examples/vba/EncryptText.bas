Attribute VB_Name = "EncryptText"
' Encrypts a text and decrypts it again, from Excel, Word or Access. Needs the registered DLL of Office's bitness and a
' reference to it (Tools, References, "Latchkey 1.0").
'
' Not run by this project's tests: they have no Office.
Option Explicit

Private Const SHA1 As Integer = 4
Private Const TRIPLE_DES As Integer = 4

Private Main As Latchkey.clsMain
Private Api As Latchkey.clsCryptoAPI

Public Sub ShowRoundTrip()
    Dim Ciphertext() As Byte
    Ciphertext = Encrypted("attack at dawn", "a secret")
    Debug.Print Decrypted(Ciphertext, "a secret")
End Sub

Public Function Encrypted(Text As String, Password As String) As Byte()
    Prepare Password
    Api.InputData = Api.StringToByteArray(Text)
    If Not Api.Encrypt(SHA1, TRIPLE_DES) Then RaiseFailure
    Encrypted = Api.OutputData
End Function

Public Function Decrypted(Ciphertext() As Byte, Password As String) As String
    Dim Plain() As Byte
    Prepare Password
    Api.InputData = Ciphertext
    If Not Api.Decrypt(SHA1, TRIPLE_DES) Then RaiseFailure
    Plain = Api.OutputData
    Decrypted = Api.ByteArrayToString(Plain)
End Function

Private Sub Prepare(Password As String)
    Dim Secret() As Byte
    If Main Is Nothing Then                        ' one on each thread: with it the thread's error record ends
        Set Main = New Latchkey.clsMain            ' first: makes the error record
        Set Api = New Latchkey.clsCryptoAPI
        Api.EnhancedProvider = True                ' before the first operation; 3DES needs it
    End If
    Secret = Api.StringToByteArray(Password)
    Api.Password = Secret                          ' erases Secret
End Sub

' No operation raises an error by itself: its result tells that it failed, and the record tells why.
Private Sub RaiseFailure()
    Err.Raise vbObjectError + Main.ErrorLocationID, "Latchkey", Main.AppErrorDescription
End Sub
