<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="es_ES" sourcelanguage="en">
<context>
    <name>hx</name>
    <message>
        <source>Setting</source>
        <translation>Ajustes</translation>
    </message>
    <message>
        <source>Call Feature</source>
        <translation>Opciones de llamada</translation>
    </message>
    <message>
        <source>Application</source>
        <translation>Aplicaciones</translation>
    </message>
    <message>
        <source>Media</source>
        <translation>Multimedia</translation>
    </message>
    <message>
        <source>WAN</source>
        <translation>WAN</translation>
    </message>
    <message>
        <source>Account Setting</source>
        <translation>Cuentas</translation>
    </message>
    <message>
        <source>Security</source>
        <translation>Seguridad</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>Estado</translation>
    </message>
    <message>
        <source>Date &amp; Time</source>
        <translation>Fecha y hora</translation>
    </message>
    <message>
        <source>Auto Provision</source>
        <translation>Autoconfiguración</translation>
    </message>
    <message>
        <source>LCD Adjusting</source>
        <translation>Calibración</translation>
    </message>
    <message>
        <source>TV Output</source>
        <translation>Salida de TV</translation>
    </message>
    <message>
        <source>Personalize</source>
        <translation>Personalizar</translation>
    </message>
    <message>
        <source>Screen Saver</source>
        <translation>Salvapantallas</translation>
    </message>
    <message>
        <source>Sound Set</source>
        <translation>Sonidos</translation>
    </message>
    <message>
        <source>Version Detail</source>
        <translation>Versiones</translation>
    </message>
    <message>
        <source>Factory</source>
        <translation>Restablecer</translation>
    </message>
    <message>
        <source>Reboot</source>
        <translation>Reiniciar</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Desvío</translation>
    </message>
    <message>
        <source>Auto Answer</source>
        <translation>Respuesta automática</translation>
    </message>
    <message>
        <source>Voice Mail</source>
        <translation>Buzón de voz</translation>
    </message>
    <message>
        <source>DSS Key</source>
        <translation>Teclas DSS</translation>
    </message>
    <message>
        <source>Key As Send</source>
        <translation>Tecla de envío</translation>
    </message>
    <message>
        <source>Call Waiting</source>
        <translation>Llamada en espera</translation>
    </message>
    <message>
        <source>Hotline</source>
        <translation>Línea directa</translation>
    </message>
    <message>
        <source>Anonymous Call</source>
        <translation>Llamada anónima</translation>
    </message>
    <message>
        <source>Video Set</source>
        <translation>Vídeo</translation>
    </message>
    <message>
        <source>Picture-dial Setting</source>
        <translation>Marcar por foto</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>Mensajes de voz</translation>
    </message>
    <message>
        <source>Weather</source>
        <translation>Tiempo</translation>
    </message>
    <message>
        <source>Stock</source>
        <translation>Bolsa</translation>
    </message>
    <message>
        <source>Ndeck</source>
        <translation>Ndeck</translation>
    </message>
    <message>
        <source>Directory</source>
        <translation>Agenda</translation>
    </message>
    <message>
        <source>Call Histroy</source>
        <translation>Historial</translation>
    </message>
    <message>
        <source>Door Phone</source>
        <translation>Videoportero</translation>
    </message>
    <message>
        <source>IP Camera</source>
        <translation>Cámara IP</translation>
    </message>
    <message>
        <source>Photo Play</source>
        <translation>Ver fotos</translation>
    </message>
    <message>
        <source>Video Play</source>
        <translation>Ver vídeos</translation>
    </message>
    <message>
        <source>Photo Manager</source>
        <translation>Gestor de fotos</translation>
    </message>
    <message>
        <source>Video Manager</source>
        <translation>Gestor de vídeos</translation>
    </message>
    <message>
        <source>Sound Manager</source>
        <translation>Gestor de tonos</translation>
    </message>
    <message>
        <source>Wallpaper Manager</source>
        <translation>Fondos</translation>
    </message>
    <message>
        <source>Contact Picture Manage</source>
        <translation>Fotos de contactos</translation>
    </message>
    <message>
        <source>Ringtone Manager</source>
        <translation>Tonos</translation>
    </message>
    <message>
        <source>File Manager</source>
        <translation>Archivos</translation>
    </message>
    <message>
        <source>Date and Time</source>
        <translation>Fecha y hora</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Guardar</translation>
    </message>
    <message>
        <source>IME</source>
        <translation>Entrada</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Borrar</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Atrás</translation>
    </message>
    <message>
        <source>More</source>
        <translation>Más</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Siguiente</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Sí</translation>
    </message>
    <message>
        <source>No</source>
        <translation>No</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>Aceptar</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Cancelar</translation>
    </message>
    <message>
        <source>Note</source>
        <translation>Aviso</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Advertencia</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Error</translation>
    </message>
    <message>
        <source>Loading...</source>
        <translation>Cargando…</translation>
    </message>
    <message>
        <source>Loading Local Phonebook Module</source>
        <translation>Cargando la agenda local</translation>
    </message>
    <message>
        <source>Loading Remote Phonebook Module</source>
        <translation>Cargando la agenda remota</translation>
    </message>
    <message>
        <source>Loading CallHistroy Module</source>
        <translation>Cargando el historial de llamadas</translation>
    </message>
    <message>
        <source>Loading Setting Module</source>
        <translation>Cargando los ajustes</translation>
    </message>
    <message>
        <source>Loading Call Feature Module</source>
        <translation>Cargando las opciones de llamada</translation>
    </message>
    <message>
        <source>Loading Application Module</source>
        <translation>Cargando las aplicaciones</translation>
    </message>
    <message>
        <source>Loading Media Module</source>
        <translation>Cargando el contenido multimedia</translation>
    </message>
    <message>
        <source>Loading Browser Module</source>
        <translation>Cargando el navegador</translation>
    </message>
    <message>
        <source>auto upgrading!</source>
        <translation>¡Actualización en curso!</translation>
    </message>
    <message>
        <source>Reset to factory?</source>
        <translation>¿Restablecer los valores de fábrica?</translation>
    </message>
    <message>
        <source>The phone could not be reset!</source>
        <translation>¡No se pudo restablecer el teléfono!</translation>
    </message>
    <message>
        <source>The phone restarts with its factory settings.</source>
        <translation>El teléfono se reinicia con los valores de fábrica.</translation>
    </message>
    <message>
        <source>Reboot device?</source>
        <translation>¿Reiniciar el teléfono?</translation>
    </message>
    <message>
        <source>Touch screen calibration will begin.</source>
        <translation>Va a comenzar la calibración de la pantalla táctil.</translation>
    </message>
    <message>
        <source>This feature is under construction.</source>
        <translation>Esta función aún no está disponible.</translation>
    </message>
    <message>
        <source>Unknow dialog type</source>
        <translation>Página desconocida</translation>
    </message>
    <message>
        <source>Fail to load xml file [/rundata/data/stockData.xml]</source>
        <translation>No se puede cargar el archivo [/rundata/data/stockData.xml]</translation>
    </message>
    <message>
        <source>DHCP</source>
        <translation>DHCP</translation>
    </message>
    <message>
        <source>PPPoE</source>
        <translation>PPPoE</translation>
    </message>
    <message>
        <source>Static IP</source>
        <translation>IP fija</translation>
    </message>
    <message>
        <source>User Name</source>
        <translation>Usuario</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Contraseña</translation>
    </message>
    <message>
        <source>IP Address</source>
        <translation>Dirección IP</translation>
    </message>
    <message>
        <source>MASK</source>
        <translation>Máscara</translation>
    </message>
    <message>
        <source>Gateway</source>
        <translation>Puerta de enlace</translation>
    </message>
    <message>
        <source>DNS1</source>
        <translation>DNS1</translation>
    </message>
    <message>
        <source>DNS2</source>
        <translation>DNS2</translation>
    </message>
    <message>
        <source>User name is invalid!</source>
        <translation>¡El nombre de usuario no es válido!</translation>
    </message>
    <message>
        <source>Password is invalid!</source>
        <translation>¡La contraseña no es válida!</translation>
    </message>
    <message>
        <source>IP address is invalid!</source>
        <translation>¡La dirección IP no es válida!</translation>
    </message>
    <message>
        <source>Ip Address is used!</source>
        <translation>¡La dirección IP ya está en uso!</translation>
    </message>
    <message>
        <source>Subnet mask is invalid!</source>
        <translation>¡La máscara de subred no es válida!</translation>
    </message>
    <message>
        <source>Gateway is invalid!</source>
        <translation>¡La puerta de enlace no es válida!</translation>
    </message>
    <message>
        <source>DNS1 is invalid!</source>
        <translation>¡DNS1 no es válido!</translation>
    </message>
    <message>
        <source>DNS2 is invalid!</source>
        <translation>¡DNS2 no es válido!</translation>
    </message>
    <message>
        <source>Network configuration has changed, reboot system?</source>
        <translation>La configuración de red ha cambiado. ¿Reiniciar?</translation>
    </message>
    <message>
        <source>Account</source>
        <translation>Cuenta</translation>
    </message>
    <message>
        <source>Enable Line</source>
        <translation>Activar la línea</translation>
    </message>
    <message>
        <source>Display Name</source>
        <translation>Nombre visible</translation>
    </message>
    <message>
        <source>Register Name</source>
        <translation>ID de registro</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Servidor</translation>
    </message>
    <message>
        <source>Port</source>
        <translation>Puerto</translation>
    </message>
    <message>
        <source>Enable STUN</source>
        <translation>Activar STUN</translation>
    </message>
    <message>
        <source>Enable OutBound</source>
        <translation>Proxy de salida</translation>
    </message>
    <message>
        <source>Display name is invalid!</source>
        <translation>¡El nombre visible no es válido!</translation>
    </message>
    <message>
        <source>Register name is invalid!</source>
        <translation>¡El ID de registro no es válido!</translation>
    </message>
    <message>
        <source>SIP proxy is invalid!</source>
        <translation>¡El servidor SIP no es válido!</translation>
    </message>
    <message>
        <source>SIP proxy server is invalid!</source>
        <translation>¡La dirección del servidor SIP no es válida!</translation>
    </message>
    <message>
        <source>SIP proxy port is invalid!</source>
        <translation>¡El puerto del servidor SIP no es válido!</translation>
    </message>
    <message>
        <source>STUN server is invalid!</source>
        <translation>¡El servidor STUN no es válido!</translation>
    </message>
    <message>
        <source>STUN server port is invalid!</source>
        <translation>¡El puerto del servidor STUN no es válido!</translation>
    </message>
    <message>
        <source>OutBound server is invalid!</source>
        <translation>¡El proxy de salida no es válido!</translation>
    </message>
    <message>
        <source>OutBound server port is invalid!</source>
        <translation>¡El puerto del proxy de salida no es válido!</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Versión</translation>
    </message>
    <message>
        <source>SoftWare Version</source>
        <translation>Software</translation>
    </message>
    <message>
        <source>HardWare Version</source>
        <translation>Hardware</translation>
    </message>
    <message>
        <source>Network</source>
        <translation>Red</translation>
    </message>
    <message>
        <source>MAC Address</source>
        <translation>Dirección MAC</translation>
    </message>
    <message>
        <source>WAN Port Type</source>
        <translation>Tipo de WAN</translation>
    </message>
    <message>
        <source>Link Status</source>
        <translation>Conexión</translation>
    </message>
    <message>
        <source>Phone Number</source>
        <translation>Número</translation>
    </message>
    <message>
        <source>Connected</source>
        <translation>Conectado</translation>
    </message>
    <message>
        <source>Disconnected</source>
        <translation>Desconectado</translation>
    </message>
    <message>
        <source>Conflict</source>
        <translation>Conflicto de IP</translation>
    </message>
    <message>
        <source>Disabled</source>
        <translation>Desactivado</translation>
    </message>
    <message>
        <source>Registering</source>
        <translation>Registrando</translation>
    </message>
    <message>
        <source>Registered</source>
        <translation>Registrada</translation>
    </message>
    <message>
        <source>Register failed</source>
        <translation>Registro fallido</translation>
    </message>
    <message>
        <source>Unregistered</source>
        <translation>No registrada</translation>
    </message>
    <message>
        <source>Default account</source>
        <translation>Cuenta predeterminada</translation>
    </message>
    <message>
        <source>Inexistence</source>
        <translation>Inexistente</translation>
    </message>
    <message>
        <source>Unregistering</source>
        <translation>Anulando registro</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Salir</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Desconocido</translation>
    </message>
    <message>
        <source>NULL</source>
        <translation>Ninguno</translation>
    </message>
    <message>
        <source>Item</source>
        <translation>Elemento</translation>
    </message>
    <message>
        <source>Old Password</source>
        <translation>Contraseña actual</translation>
    </message>
    <message>
        <source>New Password</source>
        <translation>Contraseña nueva</translation>
    </message>
    <message>
        <source>Re-enter</source>
        <translation>Repetir</translation>
    </message>
    <message>
        <source>Admin Password</source>
        <translation>Contraseña de administrador</translation>
    </message>
    <message>
        <source>Old password is wrong!</source>
        <translation>¡La contraseña actual no es correcta!</translation>
    </message>
    <message>
        <source>New passwords do not match.</source>
        <translation>Las contraseñas nuevas no coinciden.</translation>
    </message>
    <message>
        <source>Please input the password:</source>
        <translation>Introduzca la contraseña:</translation>
    </message>
    <message>
        <source>Password is wrong!</source>
        <translation>¡La contraseña no es correcta!</translation>
    </message>
    <message>
        <source>The phone number is empty!</source>
        <translation>¡Falta el número de teléfono!</translation>
    </message>
    <message>
        <source>Time Zone</source>
        <translation>Zona horaria</translation>
    </message>
    <message>
        <source>Time Format</source>
        <translation>Formato de hora</translation>
    </message>
    <message>
        <source>Time Server</source>
        <translation>Servidor de hora</translation>
    </message>
    <message>
        <source>Date</source>
        <translation>Fecha</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Hora</translation>
    </message>
    <message>
        <source>Time</source>
        <comment>how long</comment>
        <translation>Tiempo</translation>
    </message>
    <message>
        <source>NTP Mode</source>
        <translation>Hora NTP</translation>
    </message>
    <message>
        <source>Manual Mode</source>
        <translation>Manual</translation>
    </message>
    <message>
        <source>24-hour</source>
        <translation>24 horas</translation>
    </message>
    <message>
        <source>12-hour</source>
        <translation>12 horas</translation>
    </message>
    <message>
        <source>Time server is invalid!</source>
        <translation>¡El servidor de hora no es válido!</translation>
    </message>
    <message>
        <source>Door Phone 1</source>
        <translation>Videoportero 1</translation>
    </message>
    <message>
        <source>IP Camera 1</source>
        <translation>Cámara IP 1</translation>
    </message>
    <message>
        <source>LDAP</source>
        <translation>LDAP</translation>
    </message>
    <message>
        <source>Local Phonebook</source>
        <translation>Agenda local</translation>
    </message>
    <message>
        <source>Sunday</source>
        <translation>Domingo</translation>
    </message>
    <message>
        <source>Monday</source>
        <translation>Lunes</translation>
    </message>
    <message>
        <source>Tuesday</source>
        <translation>Martes</translation>
    </message>
    <message>
        <source>Wednesday</source>
        <translation>Miércoles</translation>
    </message>
    <message>
        <source>Thursday</source>
        <translation>Jueves</translation>
    </message>
    <message>
        <source>Friday</source>
        <translation>Viernes</translation>
    </message>
    <message>
        <source>Saturday</source>
        <translation>Sábado</translation>
    </message>
    <message>
        <source>January</source>
        <translation>enero</translation>
    </message>
    <message>
        <source>February</source>
        <translation>febrero</translation>
    </message>
    <message>
        <source>March</source>
        <translation>marzo</translation>
    </message>
    <message>
        <source>April</source>
        <translation>abril</translation>
    </message>
    <message>
        <source>May</source>
        <translation>mayo</translation>
    </message>
    <message>
        <source>June</source>
        <translation>junio</translation>
    </message>
    <message>
        <source>July</source>
        <translation>julio</translation>
    </message>
    <message>
        <source>August</source>
        <translation>agosto</translation>
    </message>
    <message>
        <source>September</source>
        <translation>septiembre</translation>
    </message>
    <message>
        <source>October</source>
        <translation>octubre</translation>
    </message>
    <message>
        <source>November</source>
        <translation>noviembre</translation>
    </message>
    <message>
        <source>December</source>
        <translation>diciembre</translation>
    </message>
    <message>
        <source>%1, %2 %3</source>
        <translation>%1, %2 de %3</translation>
    </message>
    <message>
        <source>Video Phone</source>
        <translation>Videoteléfono</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Auto</translation>
    </message>
    <message>
        <source>Line</source>
        <translation>Línea</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Nombre</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Número</translation>
    </message>
    <message>
        <source>Picture</source>
        <translation>Imagen</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Ninguna</translation>
    </message>
    <message>
        <source>Contact</source>
        <translation>Contacto</translation>
    </message>
    <message>
        <source>Call</source>
        <translation>Llamar</translation>
    </message>
    <message>
        <source>New</source>
        <translation>Nuevo</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>Editar</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Eliminar todo</translation>
    </message>
    <message>
        <source>Duration</source>
        <translation>Duración</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Buscar</translation>
    </message>
    <message>
        <source>Name or number</source>
        <translation>Nombre o número</translation>
    </message>
    <message>
        <source>Delete Contact</source>
        <translation>Eliminar contacto</translation>
    </message>
    <message>
        <source>Delete this contact?</source>
        <translation>¿Eliminar este contacto?</translation>
    </message>
    <message>
        <source>Settings cannot be stored. Changes last until the phone is switched off.</source>
        <translation>Los ajustes no se pueden guardar. Los cambios duran hasta que se apague el teléfono.</translation>
    </message>
    <message>
        <source>The call history cannot be saved!</source>
        <translation>¡No se puede guardar el historial de llamadas!</translation>
    </message>
    <message>
        <source>The contact cannot be saved!</source>
        <translation>¡No se puede guardar el contacto!</translation>
    </message>
    <message>
        <source>The name is empty!</source>
        <translation>¡Falta el nombre!</translation>
    </message>
    <message>
        <source>The phone book is empty.</source>
        <translation>La agenda está vacía.</translation>
    </message>
    <message>
        <source>The phone book cannot be loaded.</source>
        <translation>No se puede cargar la agenda.</translation>
    </message>
    <message>
        <source>Remote Phonebook</source>
        <translation>Agenda remota</translation>
    </message>
    <message>
        <source>There are no calls yet.</source>
        <translation>Todavía no hay llamadas.</translation>
    </message>
    <message>
        <source>Delete all calls?</source>
        <translation>¿Eliminar todas las llamadas?</translation>
    </message>
    <message>
        <source>The calls cannot be deleted!</source>
        <translation>¡No se pueden eliminar las llamadas!</translation>
    </message>
    <message>
        <source>Nothing was found.</source>
        <translation>Sin resultados.</translation>
    </message>
    <message>
        <source>LDAP server is not reachable</source>
        <translation>No se puede acceder al servidor LDAP</translation>
    </message>
    <message>
        <source>Browser</source>
        <translation>Navegador</translation>
    </message>
    <message>
        <source>Reload</source>
        <translation>Recargar</translation>
    </message>
    <message>
        <source>Previous</source>
        <translation>Anterior</translation>
    </message>
    <message>
        <source>The page cannot be loaded.</source>
        <translation>No se puede cargar la página.</translation>
    </message>
    <message>
        <source>This page cannot be shown.</source>
        <translation>No se puede mostrar esta página.</translation>
    </message>
    <message>
        <source>This address cannot be opened.</source>
        <translation>No se puede abrir esta dirección.</translation>
    </message>
    <message>
        <source>Calling...</source>
        <translation>Llamando…</translation>
    </message>
    <message>
        <source>Ringing...</source>
        <translation>Sonando…</translation>
    </message>
    <message>
        <source>Transferring...</source>
        <translation>Transfiriendo…</translation>
    </message>
    <message>
        <source>Incoming call</source>
        <translation>Llamada entrante</translation>
    </message>
    <message>
        <source>In call</source>
        <translation>En conversación</translation>
    </message>
    <message>
        <source>Call ended</source>
        <translation>Llamada finalizada</translation>
    </message>
    <message>
        <source>Busy</source>
        <translation>Ocupado</translation>
    </message>
    <message>
        <source>The line is not registered</source>
        <translation>La línea no está registrada</translation>
    </message>
    <message>
        <source>The server does not answer</source>
        <translation>El servidor no responde</translation>
    </message>
    <message>
        <source>The server's name is not known</source>
        <translation>El nombre del servidor no se conoce</translation>
    </message>
    <message>
        <source>The server does not accept name or password</source>
        <translation>El servidor rechaza el nombre o la contraseña</translation>
    </message>
    <message>
        <source>There is no secure connection to the server</source>
        <translation>Sin conexión segura con el servidor</translation>
    </message>
    <message>
        <source>The phone has no usable certificates</source>
        <translation>El teléfono no tiene certificados utilizables</translation>
    </message>
    <message>
        <source>The certificate of the server is for another name</source>
        <translation>El certificado del servidor es de otro nombre</translation>
    </message>
    <message>
        <source>The certificate of the server is from an unknown authority</source>
        <translation>El certificado del servidor es de una autoridad desconocida</translation>
    </message>
    <message>
        <source>The certificate of the server has expired</source>
        <translation>El certificado del servidor ha caducado</translation>
    </message>
    <message>
        <source>The certificate of the server is not valid yet</source>
        <translation>El certificado del servidor aún no es válido</translation>
    </message>
    <message>
        <source>The server does not accept the certificate of the phone</source>
        <translation>El servidor rechaza el certificado del teléfono</translation>
    </message>
    <message>
        <source>The server refuses a secure connection</source>
        <translation>El servidor rechaza una conexión segura</translation>
    </message>
    <message>
        <source>The server knows no secure connection</source>
        <translation>El servidor no conoce conexiones seguras</translation>
    </message>
    <message>
        <source>The name service does not answer</source>
        <translation>El servicio de nombres no responde</translation>
    </message>
    <message>
        <source>The STUN server does not answer</source>
        <translation>El servidor STUN no responde</translation>
    </message>
    <message>
        <source>The server does not know the user name</source>
        <translation>El servidor no conoce el usuario</translation>
    </message>
    <message>
        <source>The server is out of service</source>
        <translation>El servidor está fuera de servicio</translation>
    </message>
    <message>
        <source>The server asks for the password in an unknown way</source>
        <translation>El servidor pide la contraseña de un modo desconocido</translation>
    </message>
    <message>
        <source>The server refuses the registration</source>
        <translation>El servidor rechaza el registro</translation>
    </message>
    <message>
        <source>Failed</source>
        <translation>Error</translation>
    </message>
    <message>
        <source>The call was declined</source>
        <translation>La llamada fue rechazada</translation>
    </message>
    <message>
        <source>This number is not known</source>
        <translation>Este número no se conoce</translation>
    </message>
    <message>
        <source>Not available at present</source>
        <translation>No disponible por ahora</translation>
    </message>
    <message>
        <source>The server does not allow this call</source>
        <translation>El servidor no permite esta llamada</translation>
    </message>
    <message>
        <source>Anonymous</source>
        <translation>Anónimo</translation>
    </message>
    <message>
        <source>Anonymous calls are not accepted</source>
        <translation>No se aceptan llamadas anónimas</translation>
    </message>
    <message>
        <source>The two phones have no sound in common</source>
        <translation>Los dos teléfonos no tienen un formato de sonido común</translation>
    </message>
    <message>
        <source>The call could not be made</source>
        <translation>No se pudo hacer la llamada</translation>
    </message>
    <message>
        <source>Sound is not available at present</source>
        <translation>El sonido no está disponible por ahora</translation>
    </message>
    <message>
        <source>The connection was lost</source>
        <translation>Se perdió la conexión</translation>
    </message>
    <message>
        <source>Key tones do not arrive</source>
        <translation>Los tonos no llegan</translation>
    </message>
    <message>
        <source>Another phone has answered</source>
        <translation>Otro teléfono ha contestado</translation>
    </message>
    <message>
        <source>Nobody answers</source>
        <translation>Nadie contesta</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>Silenciar</translation>
    </message>
    <message>
        <source>Unmute</source>
        <translation>Con sonido</translation>
    </message>
    <message>
        <source>Muted</source>
        <translation>Silenciado</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Volumen</translation>
    </message>
    <message>
        <source>Volume</source>
        <comment>of trades</comment>
        <translation>Volumen</translation>
    </message>
    <message>
        <source>Volume -</source>
        <translation>Volumen -</translation>
    </message>
    <message>
        <source>Volume +</source>
        <translation>Volumen +</translation>
    </message>
    <message>
        <source>End</source>
        <translation>Colgar</translation>
    </message>
    <message>
        <source>Image is oversized!</source>
        <translation>¡La imagen es demasiado grande!</translation>
    </message>
    <message>
        <source>Image is error!</source>
        <translation>¡La imagen está dañada!</translation>
    </message>
    <message>
        <source>Jan</source>
        <translation>ene</translation>
    </message>
    <message>
        <source>Feb</source>
        <translation>feb</translation>
    </message>
    <message>
        <source>Mar</source>
        <translation>mar</translation>
    </message>
    <message>
        <source>Apr</source>
        <translation>abr</translation>
    </message>
    <message>
        <source>Jun</source>
        <translation>jun</translation>
    </message>
    <message>
        <source>Jul</source>
        <translation>jul</translation>
    </message>
    <message>
        <source>Aug</source>
        <translation>ago</translation>
    </message>
    <message>
        <source>Sep</source>
        <translation>sep</translation>
    </message>
    <message>
        <source>Oct</source>
        <translation>oct</translation>
    </message>
    <message>
        <source>Nov</source>
        <translation>nov</translation>
    </message>
    <message>
        <source>Dec</source>
        <translation>dic</translation>
    </message>
    <message>
        <source>Mon</source>
        <translation>lun</translation>
    </message>
    <message>
        <source>Tue</source>
        <translation>mar</translation>
    </message>
    <message>
        <source>Wed</source>
        <translation>mié</translation>
    </message>
    <message>
        <source>Thu</source>
        <translation>jue</translation>
    </message>
    <message>
        <source>Fri</source>
        <translation>vie</translation>
    </message>
    <message>
        <source>Sat</source>
        <translation>sáb</translation>
    </message>
    <message>
        <source>Sun</source>
        <translation>dom</translation>
    </message>
    <message>
        <source>%1 AM</source>
        <translation>%1 a. m.</translation>
    </message>
    <message>
        <source>%1 PM</source>
        <translation>%1 p. m.</translation>
    </message>
    <message>
        <source>Exit</source>
        <comment>state of a line</comment>
        <translation>Finalizada</translation>
    </message>
    <message>
        <source>The settings cannot be saved!</source>
        <translation>¡No se pueden guardar los ajustes!</translation>
    </message>
    <message>
        <source>Line 1</source>
        <translation>Línea 1</translation>
    </message>
    <message>
        <source>Line 2</source>
        <translation>Línea 2</translation>
    </message>
    <message>
        <source>Line 3</source>
        <translation>Línea 3</translation>
    </message>
    <message>
        <source>Line 4</source>
        <translation>Línea 4</translation>
    </message>
    <message>
        <source>Discard the changes?</source>
        <translation>¿Descartar los cambios?</translation>
    </message>
    <message>
        <source>No media found in this phone !</source>
        <translation>¡No hay archivos multimedia en este teléfono!</translation>
    </message>
    <message>
        <source>Enter</source>
        <translation>Abrir</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>Importar</translation>
    </message>
    <message>
        <source>No enough space !</source>
        <translation>¡No hay espacio suficiente!</translation>
    </message>
    <message>
        <source>Load the same file ?</source>
        <translation>Ya existe un archivo con ese nombre. ¿Reemplazarlo?</translation>
    </message>
    <message>
        <source>Loading fail!</source>
        <translation>¡La importación ha fallado!</translation>
    </message>
    <message>
        <source>Successful loading!</source>
        <translation>El archivo se ha importado.</translation>
    </message>
    <message>
        <source>Importing...</source>
        <translation>Importando…</translation>
    </message>
    <message>
        <source>Deleting...</source>
        <translation>Borrando…</translation>
    </message>
    <message>
        <source>Delete failed!</source>
        <translation>¡No se ha podido borrar!</translation>
    </message>
    <message>
        <source>Delete </source>
        <translation>Borrar </translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Vista previa</translation>
    </message>
    <message>
        <source>It's Image is use,Delete it ?</source>
        <translation>La imagen es de un contacto. ¿Borrarla?</translation>
    </message>
    <message>
        <source>It's read only,can't be deleted!</source>
        <translation>¡El archivo es de solo lectura y no se puede borrar!</translation>
    </message>
    <message>
        <source>It's the Wall Paper! Delete it ?</source>
        <translation>¡Es el fondo de pantalla! ¿Borrarlo?</translation>
    </message>
    <message>
        <source>No media found in this phone!</source>
        <translation>¡No hay archivos multimedia en este teléfono!</translation>
    </message>
    <message>
        <source>The USB device is not connected!</source>
        <translation>¡El dispositivo USB no está conectado!</translation>
    </message>
    <message>
        <source>USB</source>
        <translation>USB</translation>
    </message>
    <message>
        <source>10minutes</source>
        <translation>10 minutos</translation>
    </message>
    <message>
        <source>1minute</source>
        <translation>1 minuto</translation>
    </message>
    <message>
        <source>2minutes</source>
        <translation>2 minutos</translation>
    </message>
    <message>
        <source>30minutes</source>
        <translation>30 minutos</translation>
    </message>
    <message>
        <source>30seconds</source>
        <translation>30 segundos</translation>
    </message>
    <message>
        <source>5minutes</source>
        <translation>5 minutos</translation>
    </message>
    <message>
        <source>Always on</source>
        <translation>Siempre encendida</translation>
    </message>
    <message>
        <source>Answer</source>
        <translation>Contestar</translation>
    </message>
    <message>
        <source>Backlight Time</source>
        <translation>Luz de pantalla</translation>
    </message>
    <message>
        <source>DND Effect On PSTN</source>
        <translation>«No molestar» también en la línea analógica</translation>
    </message>
    <message>
        <source>Decline</source>
        <translation>Rechazar</translation>
    </message>
    <message>
        <source>Desktop Setting</source>
        <translation>Ajustes de pantalla</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>Idioma</translation>
    </message>
    <message>
        <source>Manual</source>
        <translation>Manual</translation>
    </message>
    <message>
        <source>NTSC</source>
        <translation>NTSC</translation>
    </message>
    <message>
        <source>Never</source>
        <translation>Nunca</translation>
    </message>
    <message>
        <source>PAL</source>
        <translation>PAL</translation>
    </message>
    <message>
        <source>Phone Setting</source>
        <translation>Ajustes del teléfono</translation>
    </message>
    <message>
        <source>Photo</source>
        <translation>Fotos</translation>
    </message>
    <message>
        <source>Reset language ?</source>
        <translation>¿Reiniciar el teléfono en este idioma?</translation>
    </message>
    <message>
        <source>Ringing Tone</source>
        <translation>Tono de llamada</translation>
    </message>
    <message>
        <source>Ringing Volume</source>
        <translation>Volumen del tono</translation>
    </message>
    <message>
        <source>Screen Type</source>
        <translation>Contenido del salvapantallas</translation>
    </message>
    <message>
        <source>Server URL</source>
        <translation>URL del servidor</translation>
    </message>
    <message>
        <source>TV Format</source>
        <translation>Norma de TV</translation>
    </message>
    <message>
        <source>Talking Volume</source>
        <translation>Volumen de conversación</translation>
    </message>
    <message>
        <source>Tones and Volume</source>
        <translation>Tonos y volumen</translation>
    </message>
    <message>
        <source>Update Server Setting</source>
        <translation>Servidor de actualización</translation>
    </message>
    <message>
        <source>Video</source>
        <translation>Vídeos</translation>
    </message>
    <message>
        <source>Wallpaper</source>
        <translation>Fondo de pantalla</translation>
    </message>
    <message>
        <source>Can not open Device</source>
        <translation>No se puede abrir la pantalla táctil.</translation>
    </message>
    <message>
        <source>LCD Adjusting fail, please try again!</source>
        <translation>¡La calibración ha fallado; inténtelo de nuevo!</translation>
    </message>
    <message>
        <source>Please keep pressing each black cross until it moves to the next position on the screen or confirmation page appears!</source>
        <translation>¡Mantenga pulsada cada cruz negra hasta que pase a la siguiente posición o aparezca la confirmación!</translation>
    </message>
    <message>
        <source>Touch screen calibration finish. Use the new profile?</source>
        <translation>La calibración de la pantalla táctil ha terminado. ¿Usar el nuevo perfil?</translation>
    </message>
    <message>
        <source>Please input the phone number:</source>
        <translation>Introduzca el número de teléfono:</translation>
    </message>
    <message>
        <source>No line is free</source>
        <translation>Ninguna línea está libre</translation>
    </message>
    <message>
        <source>This cannot be dialled</source>
        <translation>No se puede marcar</translation>
    </message>
    <message>
        <source>DSS Key</source>
        <comment>one of them</comment>
        <translation>Tecla DSS</translation>
    </message>
    <message>
        <source>DSS Key List</source>
        <translation>Teclas DSS</translation>
    </message>
    <message>
        <source>DSS Key Setting</source>
        <translation>Ajuste de tecla DSS</translation>
    </message>
    <message>
        <source>Speed Dial Setting</source>
        <translation>Ajuste de marcación rápida</translation>
    </message>
    <message>
        <source>Key</source>
        <translation>Tecla</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Tipo</translation>
    </message>
    <message>
        <source>Label</source>
        <translation>Etiqueta</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Valor</translation>
    </message>
    <message>
        <source>Extension</source>
        <translation>Extensión</translation>
    </message>
    <message>
        <source>Speed Dial</source>
        <translation>Marcación rápida</translation>
    </message>
    <message>
        <source>BLF</source>
        <translation>BLF</translation>
    </message>
    <message>
        <source>BLF List</source>
        <translation>Lista BLF</translation>
    </message>
    <message>
        <source>N/A</source>
        <translation>N/A</translation>
    </message>
    <message>
        <source>Value can't be empty!</source>
        <translation>¡Falta el valor!</translation>
    </message>
    <message>
        <source>Extension is invalid!</source>
        <translation>¡La extensión no es válida!</translation>
    </message>
    <message>
        <source>Delete the record?</source>
        <translation>¿Eliminar la entrada?</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Añadir</translation>
    </message>
    <message>
        <source>Dial Plan</source>
        <translation>Plan de marcación</translation>
    </message>
    <message>
        <source>Dial number exist.</source>
        <translation>El prefijo ya existe.</translation>
    </message>
    <message>
        <source>Prefix</source>
        <translation>Prefijo</translation>
    </message>
    <message>
        <source>Prefix is empty.</source>
        <translation>Falta el prefijo.</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Sustitución</translation>
    </message>
    <message>
        <source>Replace is empty.</source>
        <translation>Falta la sustitución.</translation>
    </message>
    <message>
        <source>The dial plan cannot be read!</source>
        <translation>¡No se puede leer el plan de marcación!</translation>
    </message>
    <message>
        <source>The max number should &lt;= 20!</source>
        <translation>¡Solo se admiten 20 entradas!</translation>
    </message>
    <message>
        <source>(1-100s)</source>
        <translation>(1-100 s)</translation>
    </message>
    <message>
        <source>10fps</source>
        <translation>10 fps</translation>
    </message>
    <message>
        <source>128kbps</source>
        <translation>128 kbps</translation>
    </message>
    <message>
        <source>15fps</source>
        <translation>15 fps</translation>
    </message>
    <message>
        <source>192kbps</source>
        <translation>192 kbps</translation>
    </message>
    <message>
        <source>1Mbps</source>
        <translation>1 Mbps</translation>
    </message>
    <message>
        <source>20fps</source>
        <translation>20 fps</translation>
    </message>
    <message>
        <source>256kbps</source>
        <translation>256 kbps</translation>
    </message>
    <message>
        <source>25fps</source>
        <translation>25 fps</translation>
    </message>
    <message>
        <source>30fps</source>
        <translation>30 fps</translation>
    </message>
    <message>
        <source>384kbps</source>
        <translation>384 kbps</translation>
    </message>
    <message>
        <source>512kbps</source>
        <translation>512 kbps</translation>
    </message>
    <message>
        <source>768kbps</source>
        <translation>768 kbps</translation>
    </message>
    <message>
        <source>After 15 Seconds</source>
        <translation>A los 15 segundos</translation>
    </message>
    <message>
        <source>After 30 Seconds</source>
        <translation>A los 30 segundos</translation>
    </message>
    <message>
        <source>After 5 Seconds</source>
        <translation>A los 5 segundos</translation>
    </message>
    <message>
        <source>Always Forward</source>
        <translation>Desviar siempre</translation>
    </message>
    <message>
        <source>Always forward number is invalid!</source>
        <translation>¡El número de «Desviar siempre» no es válido!</translation>
    </message>
    <message>
        <source>Anonymous Call Off code can't be empty!</source>
        <translation>¡Falta el código de fin de la llamada anónima!</translation>
    </message>
    <message>
        <source>Anonymous Call Rejection</source>
        <translation>Rechazar llamadas anónimas</translation>
    </message>
    <message>
        <source>Auto Answer Type</source>
        <translation>Momento de la respuesta automática</translation>
    </message>
    <message>
        <source>Bandwidth</source>
        <translation>Ancho de banda</translation>
    </message>
    <message>
        <source>Busy Forward</source>
        <translation>Desviar si comunica</translation>
    </message>
    <message>
        <source>Busy forward number is invalid!</source>
        <translation>¡El número de «Desviar si comunica» no es válido!</translation>
    </message>
    <message>
        <source>Can't forward to own number!</source>
        <translation>¡No se puede desviar al número propio!</translation>
    </message>
    <message>
        <source>Directly</source>
        <translation>De inmediato</translation>
    </message>
    <message>
        <source>Effect On PSTN</source>
        <translation>Vale también para la línea RTB</translation>
    </message>
    <message>
        <source>Enable Auto Answer</source>
        <translation>Activar la respuesta automática</translation>
    </message>
    <message>
        <source>Enable Call Waiting</source>
        <translation>Activar la llamada en espera</translation>
    </message>
    <message>
        <source>Enabled</source>
        <translation>Activado</translation>
    </message>
    <message>
        <source>Forward Setting</source>
        <translation>Desvío de llamadas</translation>
    </message>
    <message>
        <source>Frame Rate</source>
        <translation>Imágenes por segundo</translation>
    </message>
    <message>
        <source>Hotline Delay(0~10s)</source>
        <translation>Línea directa tras (0-10 s)</translation>
    </message>
    <message>
        <source>Hotline Number</source>
        <translation>Número de línea directa</translation>
    </message>
    <message>
        <source>Key #</source>
        <translation>Tecla #</translation>
    </message>
    <message>
        <source>Key *</source>
        <translation>Tecla *</translation>
    </message>
    <message>
        <source>Local Video</source>
        <translation>Vídeo propio</translation>
    </message>
    <message>
        <source>No Answer Forward</source>
        <translation>Desviar sin respuesta</translation>
    </message>
    <message>
        <source>No answer forward number is invalid!</source>
        <translation>¡El número de «Desviar sin respuesta» no es válido!</translation>
    </message>
    <message>
        <source>No answer time is not within 1-100 seconds!</source>
        <translation>¡El tiempo sin respuesta no está entre 1 y 100 segundos!</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>No</translation>
    </message>
    <message>
        <source>Off Code</source>
        <translation>Código de fin</translation>
    </message>
    <message>
        <source>On</source>
        <translation>Sí</translation>
    </message>
    <message>
        <source>On Code</source>
        <translation>Código de inicio</translation>
    </message>
    <message>
        <source>PSTN Call</source>
        <translation>Llamada RTB</translation>
    </message>
    <message>
        <source>Preferred Call Type</source>
        <translation>Tipo de llamada preferido</translation>
    </message>
    <message>
        <source>Rejection Off code can't be empty!</source>
        <translation>¡Falta el código de fin del rechazo!</translation>
    </message>
    <message>
        <source>Time limited(0-10s)!</source>
        <translation>¡El tiempo va de 0 a 10 segundos!</translation>
    </message>
    <message>
        <source>Video Call</source>
        <translation>Videollamada</translation>
    </message>
    <message>
        <source>Voice Call</source>
        <translation>Llamada de voz</translation>
    </message>
    <message>
        <source>Add call</source>
        <translation>Otra llamada</translation>
    </message>
    <message>
        <source>Dial</source>
        <translation>Marcar</translation>
    </message>
    <message>
        <source>Forward</source>
        <comment>a call that rings</comment>
        <translation>Desviar</translation>
    </message>
    <message>
        <source>Video</source>
        <comment>in a call</comment>
        <translation>Vídeo</translation>
    </message>
    <message>
        <source>Held by the other side</source>
        <translation>Retenida por el otro lado</translation>
    </message>
    <message>
        <source>Not confirmed yet</source>
        <translation>Aún sin confirmar</translation>
    </message>
    <message>
        <source>Forwarded by %1</source>
        <translation>Desviada por %1</translation>
    </message>
    <message>
        <source>Forwarded to %1</source>
        <translation>Desviada a %1</translation>
    </message>
    <message>
        <source>Transferred to %1</source>
        <translation>Transferida a %1</translation>
    </message>
    <message>
        <source>Hold</source>
        <translation>Retener</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Teclado</translation>
    </message>
    <message>
        <source>On hold</source>
        <translation>Retenida</translation>
    </message>
    <message>
        <source>Resume</source>
        <translation>Reanudar</translation>
    </message>
    <message>
        <source>Swap</source>
        <translation>Alternar</translation>
    </message>
    <message>
        <source>Conference</source>
        <translation>Conferencia</translation>
    </message>
    <message>
        <source>Split</source>
        <translation>Separar</translation>
    </message>
    <message>
        <source>These calls cannot be connected</source>
        <translation>No se pueden conectar estas llamadas</translation>
    </message>
    <message>
        <source>The other side refuses the transfer</source>
        <translation>El otro lado rechaza la transferencia</translation>
    </message>
    <message>
        <source>Transfer</source>
        <translation>Transferir</translation>
    </message>
    <message>
        <source>2N</source>
        <translation>2N</translation>
    </message>
    <message>
        <source>Access Pin</source>
        <translation>PIN de acceso</translation>
    </message>
    <message>
        <source>Account is invalid!</source>
        <translation>¡La cuenta no es válida!</translation>
    </message>
    <message>
        <source>Advance</source>
        <translation>Avanzado</translation>
    </message>
    <message>
        <source>Basic</source>
        <translation>Básico</translation>
    </message>
    <message>
        <source>Custom</source>
        <translation>Otro</translation>
    </message>
    <message>
        <source>Device Model</source>
        <translation>Modelo</translation>
    </message>
    <message>
        <source>Display Name already exists!</source>
        <translation>¡Este nombre visible ya existe!</translation>
    </message>
    <message>
        <source>Display Name is invalid!</source>
        <translation>¡El nombre visible no es válido!</translation>
    </message>
    <message>
        <source>Door Phone 2</source>
        <translation>Videoportero 2</translation>
    </message>
    <message>
        <source>Door Phone 3</source>
        <translation>Videoportero 3</translation>
    </message>
    <message>
        <source>Door Phone 4</source>
        <translation>Videoportero 4</translation>
    </message>
    <message>
        <source>Fullscreen</source>
        <translation>Pantalla completa</translation>
    </message>
    <message>
        <source>IP Camera 2</source>
        <translation>Cámara IP 2</translation>
    </message>
    <message>
        <source>IP Camera 3</source>
        <translation>Cámara IP 3</translation>
    </message>
    <message>
        <source>IP Camera 4</source>
        <translation>Cámara IP 4</translation>
    </message>
    <message>
        <source>IP Camera Setting</source>
        <translation>Ajustes de la cámara IP</translation>
    </message>
    <message>
        <source>Index</source>
        <translation>N.º</translation>
    </message>
    <message>
        <source>Line1</source>
        <translation>Línea 1</translation>
    </message>
    <message>
        <source>Line2</source>
        <translation>Línea 2</translation>
    </message>
    <message>
        <source>Line3</source>
        <translation>Línea 3</translation>
    </message>
    <message>
        <source>Line4</source>
        <translation>Línea 4</translation>
    </message>
    <message>
        <source>Linkcom</source>
        <translation>Linkcom</translation>
    </message>
    <message>
        <source>Mobotix</source>
        <translation>Mobotix</translation>
    </message>
    <message>
        <source>Not Send Audio</source>
        <translation>No enviar audio</translation>
    </message>
    <message>
        <source>Not Send Video</source>
        <translation>No enviar vídeo</translation>
    </message>
    <message>
        <source>Refuse New Incoming Call</source>
        <translation>Rechazar otras llamadas</translation>
    </message>
    <message>
        <source>Unlock Pin</source>
        <translation>PIN de apertura</translation>
    </message>
    <message>
        <source>Voice Mail Setting</source>
        <translation>Ajustes del buzón de voz</translation>
    </message>
    <message>
        <source>Voice mail number is invalid!</source>
        <translation>¡El número del buzón de voz no es válido!</translation>
    </message>
    <message>
        <source>Voice mail number is invalid!!</source>
        <translation>¡¡El número del buzón de voz no es válido!!</translation>
    </message>
    <message>
        <source>new</source>
        <translation>nuevos</translation>
    </message>
    <message>
        <source>old</source>
        <translation>antiguos</translation>
    </message>
    <message>
        <source>Open door</source>
        <translation>Abrir la puerta</translation>
    </message>
    <message>
        <source>Add %1 ?</source>
        <translation>¿Añadir %1?</translation>
    </message>
    <message>
        <source>Add Stock</source>
        <translation>Añadir acción</translation>
    </message>
    <message>
        <source>Add stock</source>
        <translation>Añadir</translation>
    </message>
    <message>
        <source>Ask Price</source>
        <translation>Precio de venta</translation>
    </message>
    <message>
        <source>Bid Price</source>
        <translation>Precio de compra</translation>
    </message>
    <message>
        <source>Delete Stock</source>
        <translation>Borrar acción</translation>
    </message>
    <message>
        <source>Delete stock</source>
        <translation>Borrar</translation>
    </message>
    <message>
        <source>High</source>
        <translation>Máximo</translation>
    </message>
    <message>
        <source>Input is empty!</source>
        <translation>¡La entrada está vacía!</translation>
    </message>
    <message>
        <source>Low</source>
        <translation>Mínimo</translation>
    </message>
    <message>
        <source>Market Cap</source>
        <translation>Capitalización</translation>
    </message>
    <message>
        <source>NetWork is not good, please wait for a while!</source>
        <translation>La red va lenta, ¡espere un momento!</translation>
    </message>
    <message>
        <source>No site information</source>
        <translation>No hay información de esta acción</translation>
    </message>
    <message>
        <source>Opening Price</source>
        <translation>Apertura</translation>
    </message>
    <message>
        <source>Prev Closing Price</source>
        <translation>Cierre anterior</translation>
    </message>
    <message>
        <source>Stock is full!</source>
        <translation>¡La lista de acciones está llena!</translation>
    </message>
    <message>
        <source>The stock is existed!</source>
        <translation>¡La acción ya existe!</translation>
    </message>
    <message>
        <source>Unable connect to Stock server, please check network.</source>
        <translation>El servidor de acciones no responde, compruebe la red.</translation>
    </message>
    <message>
        <source>Updated:</source>
        <translation>Actualizado:</translation>
    </message>
    <message>
        <source>data exception.</source>
        <translation>Los datos son erróneos.</translation>
    </message>
    <message>
        <source>Can't connect</source>
        <translation>No se puede conectar</translation>
    </message>
    <message>
        <source>Set Desktop</source>
        <translation>Poner en inicio</translation>
    </message>
    <message>
        <source>Succeed to Set Desktop!</source>
        <translation>El tiempo ya está en la pantalla de inicio.</translation>
    </message>
    <message>
        <source>Temperature</source>
        <translation>Temperatura</translation>
    </message>
</context>
</TS>
