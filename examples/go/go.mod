module decrypt_records

go 1.19
