' Every member of the service object, with known answers.
Dim main, api, timer, text, bytes, elapsed
Set main = CreateObject("Latchkey.clsMain")
Set api = CreateObject("Latchkey.clsCryptoAPI")

' RFC 1321 and RFC 3174.
Check "MD5", api.CreateHash("abc", 1, True), "900150983CD24FB0D6963F7D28E17F72"
Check "SHA-1", api.CreateHash("abc", 4, True), "A9993E364706816ABA3E25717850C26C9CD0D89D"
Check "raw digest", api.ConvertStringToHex(api.CreateHash("abc", 1)), "900150983CD24FB0D6963F7D28E17F72"
Check "case flag", api.CreateHash("abc", 1, True, False, True), "900150983CD24FB0D6963F7D28E17F72"

' Measured on a Windows CryptoAPI: base provider, MD5, RC4.
api.Password = api.StringToByteArray("correct horse battery staple")
api.InputData = api.StringToByteArray(api.ConvertStringFromHex("04090E13"))
Check "Encrypt", api.Encrypt(1, 1), True
Check "ciphertext", api.ConvertStringToHex(api.ByteArrayToString(api.OutputData)), "1A9544BD"
Check "password stays", api.ByteArrayToString(api.Password), "correct horse battery staple"
api.InputData = api.OutputData
Check "Decrypt", api.Decrypt(1, 1), True
Check "plaintext", api.ConvertStringToHex(api.ByteArrayToString(api.OutputData)), "04090E13"
Check "appended password", api.CreateHash("", 1, True, True), api.CreateHash("correct horse battery staple", 1, True)

' Measured in the same way: enhanced provider, MD5, 3DES.
Set api = CreateObject("Latchkey.clsCryptoAPI")
api.EnhancedProvider = True
api.Password = api.StringToByteArray("correct horse battery staple")
api.InputData = api.StringToByteArray(api.ConvertStringFromHex("04090E13"))
Check "3DES", api.Encrypt(1, 4), True
Check "3DES ciphertext", api.ConvertStringToHex(api.ByteArrayToString(api.OutputData)), "3CD8CBEA710A096A"

' Without a password and without the default one, both directions use an empty password.
Set api = CreateObject("Latchkey.clsCryptoAPI")
api.UseDefaultPWD = False
api.InputData = api.StringToByteArray("attack at dawn")
Check "no password", api.Encrypt(1, 2), True
api.InputData = api.OutputData
Check "no password back", api.Decrypt(1, 2), True
Check "no password text", api.ByteArrayToString(api.OutputData), "attack at dawn"
Check "no password stored", api.ByteArrayToString(api.Password), ""
api.UseDefaultPWD = True
Check "default password", api.Encrypt(1, 2), True
Check "default password stored", Len(api.ByteArrayToString(api.Password)) > 1, True

text = api.CreateRandom(16, True, True, True)
Check "CreateRandom", Len(text), 16
Check "CreateRandom differs", api.CreateRandom(16, True, True, True) = text, False
text = api.CreateSaltValue(20, True)
Check "CreateSaltValue", Len(text), 20
Check "CreateSaltValue type", TypeName(text), "String"

bytes = api.StringToByteArray("abc")
Check "array type", VarType(bytes), vbArray + vbByte
Check "array text", api.ByteArrayToString(bytes), "abc"
Check "number", api.ByteArrayToString(api.StringToByteArray(12)), "12"
Check "Boolean", api.ByteArrayToString(api.StringToByteArray(True)), "True"
Check "Empty", api.ByteArrayToString(api.StringToByteArray(Empty)), ""
Check "to hexadecimal", api.ConvertStringToHex("A" & vbLf), "410A"
Check "from hexadecimal", api.ConvertStringFromHex("4a4B"), "JK"
Check "all byte values", api.ConvertStringToHex(api.ConvertStringFromHex("00807F81FF21")), "00807F81FF21"

Set timer = CreateObject("Latchkey.clsTimer")
timer.Start
elapsed = timer.GetElapsedTime
Check "elapsed", elapsed >= 0, True
Check "elapsed type", TypeName(elapsed), "Long"
Check "connection", TypeName(main.DoesInternetConnectionExist), "Boolean"
Check "connection as method", TypeName(main.DoesInternetConnectionExist()), "Boolean"
Finish 34
