' Before this: examples/vba/EncryptText.bas without its types, and the constants of the type library.
Dim line, plain, bytes
Set Main = Nothing
For Each line In TextLines()
    plain = TextOfHex(line)
    Check "text " & line, Decrypted(Encrypted(plain, "a secret"), "a secret"), plain
Next
Prepare "a secret"
Api.InputData = Api.StringToByteArray("digits passed 141" & EndMark & "0")
If Not Api.Encrypt(latchkeyHashSHA1, latchkeyCipher3DES) Then RaiseFailure
Check "digit passed", Len(Api.ByteArrayToString(Api.OutputData)) < 32, True   ' it ends in 20, which is lost
Api.InputData = Api.StringToByteArray("attack at dawn")
Check "stored without a mark", Api.Encrypt(latchkeyHashSHA1, latchkeyCipher3DES), True
Check "no mark", Decrypted(Api.OutputData, "a secret"), "attack at dawn"
Check "like the mark", WithoutEndMark("attack ~lkend~"), "attack ~lkend~"

' Wine's VBScript has no ChrW.
Function SnowMan()
    Const FOR_READING = 1, UTF_16 = -1
    Dim files
    Set files = CreateObject("Scripting.FileSystemObject")
    SnowMan = files.OpenTextFile("snow-man.txt", FOR_READING, False, UTF_16).ReadAll
End Function

On Error Resume Next
bytes = Encrypted(SnowMan(), "a secret")
Check "character outside the code page", Err.Description, "a character is not in the system's code page"
Err.Clear
bytes = Encrypted("attack at dawn", SnowMan())
Check "password outside the code page", Err.Description, "a character of the password is not in the system's code page"
Err.Clear
plain = Decrypted(Api.StringToByteArray("no ciphertext"), "a secret")
Check "failure found by the component", Err.Description, "Error decrypting data"
Err.Clear
Api.CreateSaltValue -1
RaiseFailure
Check "run-time failure", Err.Description, Main.RTErrorDescription
Err.Clear
