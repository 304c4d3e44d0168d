<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR" sourcelanguage="en">
<context>
    <name>hx</name>
    <message>
        <source>Setting</source>
        <translation>Réglages</translation>
    </message>
    <message>
        <source>Call Feature</source>
        <translation>Options d’appel</translation>
    </message>
    <message>
        <source>Application</source>
        <translation>Applications</translation>
    </message>
    <message>
        <source>Media</source>
        <translation>Médias</translation>
    </message>
    <message>
        <source>WAN</source>
        <translation>WAN</translation>
    </message>
    <message>
        <source>Account Setting</source>
        <translation>Comptes</translation>
    </message>
    <message>
        <source>Security</source>
        <translation>Sécurité</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>État</translation>
    </message>
    <message>
        <source>Date &amp; Time</source>
        <translation>Date et heure</translation>
    </message>
    <message>
        <source>Auto Provision</source>
        <translation>Configuration auto</translation>
    </message>
    <message>
        <source>LCD Adjusting</source>
        <translation>Calibrage</translation>
    </message>
    <message>
        <source>TV Output</source>
        <translation>Sortie TV</translation>
    </message>
    <message>
        <source>Personalize</source>
        <translation>Personnaliser</translation>
    </message>
    <message>
        <source>Screen Saver</source>
        <translation>Écran de veille</translation>
    </message>
    <message>
        <source>Sound Set</source>
        <translation>Sons</translation>
    </message>
    <message>
        <source>Version Detail</source>
        <translation>Versions</translation>
    </message>
    <message>
        <source>Factory</source>
        <translation>Réinitialiser</translation>
    </message>
    <message>
        <source>Reboot</source>
        <translation>Redémarrer</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>Renvoi</translation>
    </message>
    <message>
        <source>Auto Answer</source>
        <translation>Réponse automatique</translation>
    </message>
    <message>
        <source>Voice Mail</source>
        <translation>Messagerie vocale</translation>
    </message>
    <message>
        <source>DSS Key</source>
        <translation>Touches DSS</translation>
    </message>
    <message>
        <source>Key As Send</source>
        <translation>Touche d’envoi</translation>
    </message>
    <message>
        <source>Call Waiting</source>
        <translation>Double appel</translation>
    </message>
    <message>
        <source>Hotline</source>
        <translation>Appel direct</translation>
    </message>
    <message>
        <source>Anonymous Call</source>
        <translation>Appel anonyme</translation>
    </message>
    <message>
        <source>Video Set</source>
        <translation>Vidéo</translation>
    </message>
    <message>
        <source>Picture-dial Setting</source>
        <translation>Appel par photo</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>Messages vocaux</translation>
    </message>
    <message>
        <source>Weather</source>
        <translation>Météo</translation>
    </message>
    <message>
        <source>Stock</source>
        <translation>Bourse</translation>
    </message>
    <message>
        <source>Ndeck</source>
        <translation>Ndeck</translation>
    </message>
    <message>
        <source>Directory</source>
        <translation>Annuaire</translation>
    </message>
    <message>
        <source>Call Histroy</source>
        <translation>Journal</translation>
    </message>
    <message>
        <source>Door Phone</source>
        <translation>Interphone</translation>
    </message>
    <message>
        <source>IP Camera</source>
        <translation>Caméra IP</translation>
    </message>
    <message>
        <source>Photo Play</source>
        <translation>Diaporama</translation>
    </message>
    <message>
        <source>Video Play</source>
        <translation>Lecture vidéo</translation>
    </message>
    <message>
        <source>Photo Manager</source>
        <translation>Gérer les photos</translation>
    </message>
    <message>
        <source>Video Manager</source>
        <translation>Gérer les vidéos</translation>
    </message>
    <message>
        <source>Sound Manager</source>
        <translation>Gérer les sons</translation>
    </message>
    <message>
        <source>Wallpaper Manager</source>
        <translation>Fonds d’écran</translation>
    </message>
    <message>
        <source>Contact Picture Manage</source>
        <translation>Photos de contacts</translation>
    </message>
    <message>
        <source>Ringtone Manager</source>
        <translation>Sonneries</translation>
    </message>
    <message>
        <source>File Manager</source>
        <translation>Fichiers</translation>
    </message>
    <message>
        <source>Date and Time</source>
        <translation>Date et heure</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Enregistrer</translation>
    </message>
    <message>
        <source>IME</source>
        <translation>Saisie</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Effacer</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Retour</translation>
    </message>
    <message>
        <source>More</source>
        <translation>Suite</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Suivant</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>Oui</translation>
    </message>
    <message>
        <source>No</source>
        <translation>Non</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <source>Note</source>
        <translation>Information</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Attention</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Erreur</translation>
    </message>
    <message>
        <source>Loading...</source>
        <translation>Chargement…</translation>
    </message>
    <message>
        <source>Loading Local Phonebook Module</source>
        <translation>Chargement de l’annuaire local</translation>
    </message>
    <message>
        <source>Loading Remote Phonebook Module</source>
        <translation>Chargement de l’annuaire distant</translation>
    </message>
    <message>
        <source>Loading CallHistroy Module</source>
        <translation>Chargement du journal d’appels</translation>
    </message>
    <message>
        <source>Loading Setting Module</source>
        <translation>Chargement des réglages</translation>
    </message>
    <message>
        <source>Loading Call Feature Module</source>
        <translation>Chargement des options d’appel</translation>
    </message>
    <message>
        <source>Loading Application Module</source>
        <translation>Chargement des applications</translation>
    </message>
    <message>
        <source>Loading Media Module</source>
        <translation>Chargement des médias</translation>
    </message>
    <message>
        <source>Loading Browser Module</source>
        <translation>Chargement du navigateur</translation>
    </message>
    <message>
        <source>auto upgrading!</source>
        <translation>Mise à jour en cours !</translation>
    </message>
    <message>
        <source>Reset to factory?</source>
        <translation>Rétablir les réglages d’usine ?</translation>
    </message>
    <message>
        <source>The phone could not be reset!</source>
        <translation>Le téléphone n’a pas pu être réinitialisé !</translation>
    </message>
    <message>
        <source>The phone restarts with its factory settings.</source>
        <translation>Le téléphone redémarre avec les réglages d’usine.</translation>
    </message>
    <message>
        <source>Reboot device?</source>
        <translation>Redémarrer le téléphone ?</translation>
    </message>
    <message>
        <source>Touch screen calibration will begin.</source>
        <translation>Le calibrage de l’écran tactile va commencer.</translation>
    </message>
    <message>
        <source>This feature is under construction.</source>
        <translation>Cette fonction n’est pas encore disponible.</translation>
    </message>
    <message>
        <source>Unknow dialog type</source>
        <translation>Page inconnue</translation>
    </message>
    <message>
        <source>Fail to load xml file [/rundata/data/stockData.xml]</source>
        <translation>Impossible de charger le fichier [/rundata/data/stockData.xml]</translation>
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
        <translation>IP fixe</translation>
    </message>
    <message>
        <source>User Name</source>
        <translation>Nom d’utilisateur</translation>
    </message>
    <message>
        <source>Password</source>
        <translation>Mot de passe</translation>
    </message>
    <message>
        <source>IP Address</source>
        <translation>Adresse IP</translation>
    </message>
    <message>
        <source>MASK</source>
        <translation>Masque</translation>
    </message>
    <message>
        <source>Gateway</source>
        <translation>Passerelle</translation>
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
        <translation>Le nom d’utilisateur n’est pas valide !</translation>
    </message>
    <message>
        <source>Password is invalid!</source>
        <translation>Le mot de passe n’est pas valide !</translation>
    </message>
    <message>
        <source>IP address is invalid!</source>
        <translation>L’adresse IP n’est pas valide !</translation>
    </message>
    <message>
        <source>Ip Address is used!</source>
        <translation>L’adresse IP est déjà utilisée !</translation>
    </message>
    <message>
        <source>Subnet mask is invalid!</source>
        <translation>Le masque de sous-réseau n’est pas valide !</translation>
    </message>
    <message>
        <source>Gateway is invalid!</source>
        <translation>La passerelle n’est pas valide !</translation>
    </message>
    <message>
        <source>DNS1 is invalid!</source>
        <translation>DNS1 n’est pas valide !</translation>
    </message>
    <message>
        <source>DNS2 is invalid!</source>
        <translation>DNS2 n’est pas valide !</translation>
    </message>
    <message>
        <source>Network configuration has changed, reboot system?</source>
        <translation>La configuration réseau a changé. Redémarrer ?</translation>
    </message>
    <message>
        <source>Account</source>
        <translation>Compte</translation>
    </message>
    <message>
        <source>Enable Line</source>
        <translation>Activer la ligne</translation>
    </message>
    <message>
        <source>Display Name</source>
        <translation>Nom affiché</translation>
    </message>
    <message>
        <source>Register Name</source>
        <translation>Identifiant</translation>
    </message>
    <message>
        <source>Server</source>
        <translation>Serveur</translation>
    </message>
    <message>
        <source>Port</source>
        <translation>Port</translation>
    </message>
    <message>
        <source>Enable STUN</source>
        <translation>Activer STUN</translation>
    </message>
    <message>
        <source>Enable OutBound</source>
        <translation>Proxy sortant</translation>
    </message>
    <message>
        <source>Display name is invalid!</source>
        <translation>Le nom affiché n’est pas valide !</translation>
    </message>
    <message>
        <source>Register name is invalid!</source>
        <translation>L’identifiant n’est pas valide !</translation>
    </message>
    <message>
        <source>SIP proxy is invalid!</source>
        <translation>Le serveur SIP n’est pas valide !</translation>
    </message>
    <message>
        <source>SIP proxy server is invalid!</source>
        <translation>L’adresse du serveur SIP n’est pas valide !</translation>
    </message>
    <message>
        <source>SIP proxy port is invalid!</source>
        <translation>Le port du serveur SIP n’est pas valide !</translation>
    </message>
    <message>
        <source>STUN server is invalid!</source>
        <translation>Le serveur STUN n’est pas valide !</translation>
    </message>
    <message>
        <source>STUN server port is invalid!</source>
        <translation>Le port du serveur STUN n’est pas valide !</translation>
    </message>
    <message>
        <source>OutBound server is invalid!</source>
        <translation>Le proxy sortant n’est pas valide !</translation>
    </message>
    <message>
        <source>OutBound server port is invalid!</source>
        <translation>Le port du proxy sortant n’est pas valide !</translation>
    </message>
    <message>
        <source>Version</source>
        <translation>Version</translation>
    </message>
    <message>
        <source>SoftWare Version</source>
        <translation>Logiciel</translation>
    </message>
    <message>
        <source>HardWare Version</source>
        <translation>Matériel</translation>
    </message>
    <message>
        <source>Network</source>
        <translation>Réseau</translation>
    </message>
    <message>
        <source>MAC Address</source>
        <translation>Adresse MAC</translation>
    </message>
    <message>
        <source>WAN Port Type</source>
        <translation>Type de WAN</translation>
    </message>
    <message>
        <source>Link Status</source>
        <translation>Connexion</translation>
    </message>
    <message>
        <source>Phone Number</source>
        <translation>Numéro</translation>
    </message>
    <message>
        <source>Connected</source>
        <translation>Connecté</translation>
    </message>
    <message>
        <source>Disconnected</source>
        <translation>Déconnecté</translation>
    </message>
    <message>
        <source>Conflict</source>
        <translation>Conflit d’IP</translation>
    </message>
    <message>
        <source>Disabled</source>
        <translation>Désactivé</translation>
    </message>
    <message>
        <source>Registering</source>
        <translation>Enregistrement en cours</translation>
    </message>
    <message>
        <source>Registered</source>
        <translation>Enregistré</translation>
    </message>
    <message>
        <source>Register failed</source>
        <translation>Échec d’enregistrement</translation>
    </message>
    <message>
        <source>Unregistered</source>
        <translation>Non enregistré</translation>
    </message>
    <message>
        <source>Default account</source>
        <translation>Compte par défaut</translation>
    </message>
    <message>
        <source>Inexistence</source>
        <translation>Inexistant</translation>
    </message>
    <message>
        <source>Unregistering</source>
        <translation>Désenregistrement en cours</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Quitter</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>Inconnu</translation>
    </message>
    <message>
        <source>NULL</source>
        <translation>Aucun</translation>
    </message>
    <message>
        <source>Item</source>
        <translation>Élément</translation>
    </message>
    <message>
        <source>Old Password</source>
        <translation>Ancien mot de passe</translation>
    </message>
    <message>
        <source>New Password</source>
        <translation>Nouveau mot de passe</translation>
    </message>
    <message>
        <source>Re-enter</source>
        <translation>Confirmer</translation>
    </message>
    <message>
        <source>Admin Password</source>
        <translation>Mot de passe administrateur</translation>
    </message>
    <message>
        <source>Old password is wrong!</source>
        <translation>L’ancien mot de passe est incorrect !</translation>
    </message>
    <message>
        <source>New passwords do not match.</source>
        <translation>Les nouveaux mots de passe ne correspondent pas.</translation>
    </message>
    <message>
        <source>Please input the password:</source>
        <translation>Saisissez le mot de passe :</translation>
    </message>
    <message>
        <source>Password is wrong!</source>
        <translation>Le mot de passe est incorrect !</translation>
    </message>
    <message>
        <source>The phone number is empty!</source>
        <translation>Saisissez un numéro.</translation>
    </message>
    <message>
        <source>Time Zone</source>
        <translation>Fuseau horaire</translation>
    </message>
    <message>
        <source>Time Format</source>
        <translation>Format de l’heure</translation>
    </message>
    <message>
        <source>Time Server</source>
        <translation>Serveur de temps</translation>
    </message>
    <message>
        <source>Date</source>
        <translation>Date</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Heure</translation>
    </message>
    <message>
        <source>Time</source>
        <comment>how long</comment>
        <translation>Durée</translation>
    </message>
    <message>
        <source>NTP Mode</source>
        <translation>Heure NTP</translation>
    </message>
    <message>
        <source>Manual Mode</source>
        <translation>Manuel</translation>
    </message>
    <message>
        <source>24-hour</source>
        <translation>24 heures</translation>
    </message>
    <message>
        <source>12-hour</source>
        <translation>12 heures</translation>
    </message>
    <message>
        <source>Time server is invalid!</source>
        <translation>Le serveur de temps n’est pas valide !</translation>
    </message>
    <message>
        <source>Door Phone 1</source>
        <translation>Interphone 1</translation>
    </message>
    <message>
        <source>IP Camera 1</source>
        <translation>Caméra IP 1</translation>
    </message>
    <message>
        <source>LDAP</source>
        <translation>LDAP</translation>
    </message>
    <message>
        <source>Local Phonebook</source>
        <translation>Annuaire local</translation>
    </message>
    <message>
        <source>Sunday</source>
        <translation>Dimanche</translation>
    </message>
    <message>
        <source>Monday</source>
        <translation>Lundi</translation>
    </message>
    <message>
        <source>Tuesday</source>
        <translation>Mardi</translation>
    </message>
    <message>
        <source>Wednesday</source>
        <translation>Mercredi</translation>
    </message>
    <message>
        <source>Thursday</source>
        <translation>Jeudi</translation>
    </message>
    <message>
        <source>Friday</source>
        <translation>Vendredi</translation>
    </message>
    <message>
        <source>Saturday</source>
        <translation>Samedi</translation>
    </message>
    <message>
        <source>January</source>
        <translation>janvier</translation>
    </message>
    <message>
        <source>February</source>
        <translation>février</translation>
    </message>
    <message>
        <source>March</source>
        <translation>mars</translation>
    </message>
    <message>
        <source>April</source>
        <translation>avril</translation>
    </message>
    <message>
        <source>May</source>
        <translation>mai</translation>
    </message>
    <message>
        <source>June</source>
        <translation>juin</translation>
    </message>
    <message>
        <source>July</source>
        <translation>juillet</translation>
    </message>
    <message>
        <source>August</source>
        <translation>août</translation>
    </message>
    <message>
        <source>September</source>
        <translation>septembre</translation>
    </message>
    <message>
        <source>October</source>
        <translation>octobre</translation>
    </message>
    <message>
        <source>November</source>
        <translation>novembre</translation>
    </message>
    <message>
        <source>December</source>
        <translation>décembre</translation>
    </message>
    <message>
        <source>%1, %2 %3</source>
        <translation>%1 %2 %3</translation>
    </message>
    <message>
        <source>Video Phone</source>
        <translation>Visiophone</translation>
    </message>
    <message>
        <source>Auto</source>
        <translation>Auto</translation>
    </message>
    <message>
        <source>Line</source>
        <translation>Ligne</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Nom</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Numéro</translation>
    </message>
    <message>
        <source>Picture</source>
        <translation>Image</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Aucune</translation>
    </message>
    <message>
        <source>Contact</source>
        <translation>Contact</translation>
    </message>
    <message>
        <source>Call</source>
        <translation>Appeler</translation>
    </message>
    <message>
        <source>New</source>
        <translation>Nouveau</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>Modifier</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Tout supprimer</translation>
    </message>
    <message>
        <source>Duration</source>
        <translation>Durée</translation>
    </message>
    <message>
        <source>Search</source>
        <translation>Rechercher</translation>
    </message>
    <message>
        <source>Name or number</source>
        <translation>Nom ou numéro</translation>
    </message>
    <message>
        <source>Delete Contact</source>
        <translation>Supprimer le contact</translation>
    </message>
    <message>
        <source>Delete this contact?</source>
        <translation>Supprimer ce contact ?</translation>
    </message>
    <message>
        <source>Settings cannot be stored. Changes last until the phone is switched off.</source>
        <translation>Les réglages ne peuvent pas être enregistrés. Les changements durent jusqu’à l’arrêt du téléphone.</translation>
    </message>
    <message>
        <source>The call history cannot be saved!</source>
        <translation>Impossible d’enregistrer le journal d’appels !</translation>
    </message>
    <message>
        <source>The contact cannot be saved!</source>
        <translation>Impossible d’enregistrer le contact !</translation>
    </message>
    <message>
        <source>The name is empty!</source>
        <translation>Saisissez un nom.</translation>
    </message>
    <message>
        <source>The phone book is empty.</source>
        <translation>L’annuaire est vide.</translation>
    </message>
    <message>
        <source>The phone book cannot be loaded.</source>
        <translation>Impossible de charger l’annuaire.</translation>
    </message>
    <message>
        <source>Remote Phonebook</source>
        <translation>Annuaire distant</translation>
    </message>
    <message>
        <source>There are no calls yet.</source>
        <translation>Aucun appel pour le moment.</translation>
    </message>
    <message>
        <source>Delete all calls?</source>
        <translation>Supprimer tous les appels ?</translation>
    </message>
    <message>
        <source>The calls cannot be deleted!</source>
        <translation>Impossible de supprimer les appels !</translation>
    </message>
    <message>
        <source>Nothing was found.</source>
        <translation>Aucun résultat.</translation>
    </message>
    <message>
        <source>LDAP server is not reachable</source>
        <translation>Le serveur LDAP est injoignable</translation>
    </message>
    <message>
        <source>Browser</source>
        <translation>Navigateur</translation>
    </message>
    <message>
        <source>Reload</source>
        <translation>Actualiser</translation>
    </message>
    <message>
        <source>Previous</source>
        <translation>Précédente</translation>
    </message>
    <message>
        <source>The page cannot be loaded.</source>
        <translation>Impossible de charger la page.</translation>
    </message>
    <message>
        <source>This page cannot be shown.</source>
        <translation>Impossible d’afficher cette page.</translation>
    </message>
    <message>
        <source>This address cannot be opened.</source>
        <translation>Impossible d’ouvrir cette adresse.</translation>
    </message>
    <message>
        <source>Calling...</source>
        <translation>Appel…</translation>
    </message>
    <message>
        <source>Ringing...</source>
        <translation>Ça sonne…</translation>
    </message>
    <message>
        <source>Transferring...</source>
        <translation>Transfert en cours…</translation>
    </message>
    <message>
        <source>Incoming call</source>
        <translation>Appel entrant</translation>
    </message>
    <message>
        <source>In call</source>
        <translation>En communication</translation>
    </message>
    <message>
        <source>Call ended</source>
        <translation>Appel terminé</translation>
    </message>
    <message>
        <source>Busy</source>
        <translation>Occupé</translation>
    </message>
    <message>
        <source>The line is not registered</source>
        <translation>La ligne n’est pas enregistrée</translation>
    </message>
    <message>
        <source>The server does not answer</source>
        <translation>Le serveur ne répond pas</translation>
    </message>
    <message>
        <source>The server's name is not known</source>
        <translation>Le nom du serveur est inconnu</translation>
    </message>
    <message>
        <source>The server does not accept name or password</source>
        <translation>Le serveur refuse le nom ou le mot de passe</translation>
    </message>
    <message>
        <source>There is no secure connection to the server</source>
        <translation>Pas de connexion sécurisée au serveur</translation>
    </message>
    <message>
        <source>The phone has no usable certificates</source>
        <translation>Le téléphone n’a pas de certificats utilisables</translation>
    </message>
    <message>
        <source>The certificate of the server is for another name</source>
        <translation>Le certificat du serveur porte un autre nom</translation>
    </message>
    <message>
        <source>The certificate of the server is from an unknown authority</source>
        <translation>Le certificat du serveur vient d’une autorité inconnue</translation>
    </message>
    <message>
        <source>The certificate of the server has expired</source>
        <translation>Le certificat du serveur a expiré</translation>
    </message>
    <message>
        <source>The certificate of the server is not valid yet</source>
        <translation>Le certificat du serveur n’est pas encore valable</translation>
    </message>
    <message>
        <source>The server does not accept the certificate of the phone</source>
        <translation>Le serveur refuse le certificat du téléphone</translation>
    </message>
    <message>
        <source>The server refuses a secure connection</source>
        <translation>Le serveur refuse une connexion sécurisée</translation>
    </message>
    <message>
        <source>The server knows no secure connection</source>
        <translation>Le serveur ne connaît pas de connexion sécurisée</translation>
    </message>
    <message>
        <source>The name service does not answer</source>
        <translation>Le service de noms ne répond pas</translation>
    </message>
    <message>
        <source>The STUN server does not answer</source>
        <translation>Le serveur STUN ne répond pas</translation>
    </message>
    <message>
        <source>The server does not know the user name</source>
        <translation>Le serveur ne connaît pas le nom d’utilisateur</translation>
    </message>
    <message>
        <source>The server is out of service</source>
        <translation>Le serveur est hors service</translation>
    </message>
    <message>
        <source>The server asks for the password in an unknown way</source>
        <translation>Le serveur demande le mot de passe d’une façon inconnue</translation>
    </message>
    <message>
        <source>The server refuses the registration</source>
        <translation>Le serveur refuse l’enregistrement</translation>
    </message>
    <message>
        <source>Failed</source>
        <translation>Échec</translation>
    </message>
    <message>
        <source>The call was declined</source>
        <translation>L’appel a été refusé</translation>
    </message>
    <message>
        <source>This number is not known</source>
        <translation>Ce numéro n’est pas connu</translation>
    </message>
    <message>
        <source>Not available at present</source>
        <translation>Indisponible pour le moment</translation>
    </message>
    <message>
        <source>The server does not allow this call</source>
        <translation>Le serveur n’autorise pas cet appel</translation>
    </message>
    <message>
        <source>Anonymous</source>
        <translation>Anonyme</translation>
    </message>
    <message>
        <source>Anonymous calls are not accepted</source>
        <translation>Les appels anonymes ne sont pas acceptés</translation>
    </message>
    <message>
        <source>The two phones have no sound in common</source>
        <translation>Les deux téléphones n’ont aucun format de son en commun</translation>
    </message>
    <message>
        <source>The call could not be made</source>
        <translation>L’appel n’a pas pu aboutir</translation>
    </message>
    <message>
        <source>Sound is not available at present</source>
        <translation>Le son n’est pas disponible pour le moment</translation>
    </message>
    <message>
        <source>The connection was lost</source>
        <translation>La connexion a été perdue</translation>
    </message>
    <message>
        <source>Key tones do not arrive</source>
        <translation>Les tonalités n’arrivent pas</translation>
    </message>
    <message>
        <source>Another phone has answered</source>
        <translation>Un autre téléphone a répondu</translation>
    </message>
    <message>
        <source>Nobody answers</source>
        <translation>Personne ne répond</translation>
    </message>
    <message>
        <source>Mute</source>
        <translation>Sans son</translation>
    </message>
    <message>
        <source>Unmute</source>
        <translation>Avec son</translation>
    </message>
    <message>
        <source>Muted</source>
        <translation>Son coupé</translation>
    </message>
    <message>
        <source>Volume</source>
        <translation>Volume</translation>
    </message>
    <message>
        <source>Volume</source>
        <comment>of trades</comment>
        <translation>Volume</translation>
    </message>
    <message>
        <source>Volume -</source>
        <translation>Volume -</translation>
    </message>
    <message>
        <source>Volume +</source>
        <translation>Volume +</translation>
    </message>
    <message>
        <source>End</source>
        <translation>Raccrocher</translation>
    </message>
    <message>
        <source>Image is oversized!</source>
        <translation>Image trop grande !</translation>
    </message>
    <message>
        <source>Image is error!</source>
        <translation>Image endommagée !</translation>
    </message>
    <message>
        <source>Jan</source>
        <translation>janv.</translation>
    </message>
    <message>
        <source>Feb</source>
        <translation>févr.</translation>
    </message>
    <message>
        <source>Mar</source>
        <translation>mars</translation>
    </message>
    <message>
        <source>Apr</source>
        <translation>avr.</translation>
    </message>
    <message>
        <source>Jun</source>
        <translation>juin</translation>
    </message>
    <message>
        <source>Jul</source>
        <translation>juil.</translation>
    </message>
    <message>
        <source>Aug</source>
        <translation>août</translation>
    </message>
    <message>
        <source>Sep</source>
        <translation>sept.</translation>
    </message>
    <message>
        <source>Oct</source>
        <translation>oct.</translation>
    </message>
    <message>
        <source>Nov</source>
        <translation>nov.</translation>
    </message>
    <message>
        <source>Dec</source>
        <translation>déc.</translation>
    </message>
    <message>
        <source>Mon</source>
        <translation>lun.</translation>
    </message>
    <message>
        <source>Tue</source>
        <translation>mar.</translation>
    </message>
    <message>
        <source>Wed</source>
        <translation>mer.</translation>
    </message>
    <message>
        <source>Thu</source>
        <translation>jeu.</translation>
    </message>
    <message>
        <source>Fri</source>
        <translation>ven.</translation>
    </message>
    <message>
        <source>Sat</source>
        <translation>sam.</translation>
    </message>
    <message>
        <source>Sun</source>
        <translation>dim.</translation>
    </message>
    <message>
        <source>%1 AM</source>
        <translation>%1 AM</translation>
    </message>
    <message>
        <source>%1 PM</source>
        <translation>%1 PM</translation>
    </message>
    <message>
        <source>Exit</source>
        <comment>state of a line</comment>
        <translation>Arrêté</translation>
    </message>
    <message>
        <source>The settings cannot be saved!</source>
        <translation>Impossible d’enregistrer les réglages !</translation>
    </message>
    <message>
        <source>Line 1</source>
        <translation>Ligne 1</translation>
    </message>
    <message>
        <source>Line 2</source>
        <translation>Ligne 2</translation>
    </message>
    <message>
        <source>Line 3</source>
        <translation>Ligne 3</translation>
    </message>
    <message>
        <source>Line 4</source>
        <translation>Ligne 4</translation>
    </message>
    <message>
        <source>Discard the changes?</source>
        <translation>Abandonner les modifications ?</translation>
    </message>
    <message>
        <source>No media found in this phone !</source>
        <translation>Aucun média dans ce téléphone !</translation>
    </message>
    <message>
        <source>Enter</source>
        <translation>Ouvrir</translation>
    </message>
    <message>
        <source>Import</source>
        <translation>Importer</translation>
    </message>
    <message>
        <source>No enough space !</source>
        <translation>Espace insuffisant !</translation>
    </message>
    <message>
        <source>Load the same file ?</source>
        <translation>Un fichier de ce nom existe déjà. Le remplacer ?</translation>
    </message>
    <message>
        <source>Loading fail!</source>
        <translation>L’importation a échoué !</translation>
    </message>
    <message>
        <source>Successful loading!</source>
        <translation>Le fichier a été importé.</translation>
    </message>
    <message>
        <source>Importing...</source>
        <translation>Importation…</translation>
    </message>
    <message>
        <source>Deleting...</source>
        <translation>Effacement…</translation>
    </message>
    <message>
        <source>Delete failed!</source>
        <translation>L’effacement a échoué !</translation>
    </message>
    <message>
        <source>Delete </source>
        <translation>Effacer </translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Aperçu</translation>
    </message>
    <message>
        <source>It's Image is use,Delete it ?</source>
        <translation>L’image est celle d’un contact. L’effacer ?</translation>
    </message>
    <message>
        <source>It's read only,can't be deleted!</source>
        <translation>Ce fichier est en lecture seule et ne peut pas être effacé !</translation>
    </message>
    <message>
        <source>It's the Wall Paper! Delete it ?</source>
        <translation>C’est le fond d’écran ! L’effacer ?</translation>
    </message>
    <message>
        <source>No media found in this phone!</source>
        <translation>Aucun média dans ce téléphone !</translation>
    </message>
    <message>
        <source>The USB device is not connected!</source>
        <translation>L’appareil USB n’est pas connecté !</translation>
    </message>
    <message>
        <source>USB</source>
        <translation>USB</translation>
    </message>
    <message>
        <source>10minutes</source>
        <translation>10 minutes</translation>
    </message>
    <message>
        <source>1minute</source>
        <translation>1 minute</translation>
    </message>
    <message>
        <source>2minutes</source>
        <translation>2 minutes</translation>
    </message>
    <message>
        <source>30minutes</source>
        <translation>30 minutes</translation>
    </message>
    <message>
        <source>30seconds</source>
        <translation>30 secondes</translation>
    </message>
    <message>
        <source>5minutes</source>
        <translation>5 minutes</translation>
    </message>
    <message>
        <source>Always on</source>
        <translation>Toujours allumé</translation>
    </message>
    <message>
        <source>Answer</source>
        <translation>Répondre</translation>
    </message>
    <message>
        <source>Backlight Time</source>
        <translation>Extinction de l’écran</translation>
    </message>
    <message>
        <source>DND Effect On PSTN</source>
        <translation>« Ne pas déranger » vaut aussi pour la ligne analogique</translation>
    </message>
    <message>
        <source>Decline</source>
        <translation>Refuser</translation>
    </message>
    <message>
        <source>Desktop Setting</source>
        <translation>Réglage de l’écran</translation>
    </message>
    <message>
        <source>Language</source>
        <translation>Langue</translation>
    </message>
    <message>
        <source>Manual</source>
        <translation>Manuel</translation>
    </message>
    <message>
        <source>NTSC</source>
        <translation>NTSC</translation>
    </message>
    <message>
        <source>Never</source>
        <translation>Jamais</translation>
    </message>
    <message>
        <source>PAL</source>
        <translation>PAL</translation>
    </message>
    <message>
        <source>Phone Setting</source>
        <translation>Réglage du téléphone</translation>
    </message>
    <message>
        <source>Photo</source>
        <translation>Photos</translation>
    </message>
    <message>
        <source>Reset language ?</source>
        <translation>Redémarrer le téléphone dans cette langue ?</translation>
    </message>
    <message>
        <source>Ringing Tone</source>
        <translation>Sonnerie</translation>
    </message>
    <message>
        <source>Ringing Volume</source>
        <translation>Volume de la sonnerie</translation>
    </message>
    <message>
        <source>Screen Type</source>
        <translation>Contenu de l’écran de veille</translation>
    </message>
    <message>
        <source>Server URL</source>
        <translation>URL du serveur</translation>
    </message>
    <message>
        <source>TV Format</source>
        <translation>Norme TV</translation>
    </message>
    <message>
        <source>Talking Volume</source>
        <translation>Volume de conversation</translation>
    </message>
    <message>
        <source>Tones and Volume</source>
        <translation>Sons et volume</translation>
    </message>
    <message>
        <source>Update Server Setting</source>
        <translation>Serveur de mise à jour</translation>
    </message>
    <message>
        <source>Video</source>
        <translation>Films</translation>
    </message>
    <message>
        <source>Wallpaper</source>
        <translation>Fond d’écran</translation>
    </message>
    <message>
        <source>Can not open Device</source>
        <translation>Impossible d’ouvrir l’écran tactile.</translation>
    </message>
    <message>
        <source>LCD Adjusting fail, please try again!</source>
        <translation>Échec du calibrage. Veuillez réessayer !</translation>
    </message>
    <message>
        <source>Please keep pressing each black cross until it moves to the next position on the screen or confirmation page appears!</source>
        <translation>Maintenez le doigt sur chaque croix noire jusqu’à ce qu’elle se déplace ou que la confirmation s’affiche !</translation>
    </message>
    <message>
        <source>Touch screen calibration finish. Use the new profile?</source>
        <translation>Le calibrage de l’écran tactile est terminé. Utiliser le nouveau profil ?</translation>
    </message>
    <message>
        <source>Please input the phone number:</source>
        <translation>Saisissez le numéro :</translation>
    </message>
    <message>
        <source>No line is free</source>
        <translation>Aucune ligne n’est libre</translation>
    </message>
    <message>
        <source>This cannot be dialled</source>
        <translation>Ce numéro ne peut pas être composé</translation>
    </message>
    <message>
        <source>DSS Key</source>
        <comment>one of them</comment>
        <translation>Touche DSS</translation>
    </message>
    <message>
        <source>DSS Key List</source>
        <translation>Touches DSS</translation>
    </message>
    <message>
        <source>DSS Key Setting</source>
        <translation>Réglage de touche DSS</translation>
    </message>
    <message>
        <source>Speed Dial Setting</source>
        <translation>Réglage des numéros abrégés</translation>
    </message>
    <message>
        <source>Key</source>
        <translation>Touche</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Type</translation>
    </message>
    <message>
        <source>Label</source>
        <translation>Étiquette</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Valeur</translation>
    </message>
    <message>
        <source>Extension</source>
        <translation>Poste</translation>
    </message>
    <message>
        <source>Speed Dial</source>
        <translation>Numéro abrégé</translation>
    </message>
    <message>
        <source>BLF</source>
        <translation>BLF</translation>
    </message>
    <message>
        <source>BLF List</source>
        <translation>Liste BLF</translation>
    </message>
    <message>
        <source>N/A</source>
        <translation>N/A</translation>
    </message>
    <message>
        <source>Value can't be empty!</source>
        <translation>Saisissez la valeur !</translation>
    </message>
    <message>
        <source>Extension is invalid!</source>
        <translation>Le poste n’est pas valide !</translation>
    </message>
    <message>
        <source>Delete the record?</source>
        <translation>Supprimer l’entrée ?</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Ajouter</translation>
    </message>
    <message>
        <source>Dial Plan</source>
        <translation>Plan de numérotation</translation>
    </message>
    <message>
        <source>Dial number exist.</source>
        <translation>Ce préfixe existe déjà.</translation>
    </message>
    <message>
        <source>Prefix</source>
        <translation>Préfixe</translation>
    </message>
    <message>
        <source>Prefix is empty.</source>
        <translation>Saisissez un préfixe.</translation>
    </message>
    <message>
        <source>Replace</source>
        <translation>Remplacement</translation>
    </message>
    <message>
        <source>Replace is empty.</source>
        <translation>Saisissez un remplacement.</translation>
    </message>
    <message>
        <source>The dial plan cannot be read!</source>
        <translation>Le plan de numérotation ne peut pas être lu !</translation>
    </message>
    <message>
        <source>The max number should &lt;= 20!</source>
        <translation>20 entrées au maximum !</translation>
    </message>
    <message>
        <source>(1-100s)</source>
        <translation>(1–100 s)</translation>
    </message>
    <message>
        <source>10fps</source>
        <translation>10 i/s</translation>
    </message>
    <message>
        <source>128kbps</source>
        <translation>128 kbit/s</translation>
    </message>
    <message>
        <source>15fps</source>
        <translation>15 i/s</translation>
    </message>
    <message>
        <source>192kbps</source>
        <translation>192 kbit/s</translation>
    </message>
    <message>
        <source>1Mbps</source>
        <translation>1 Mbit/s</translation>
    </message>
    <message>
        <source>20fps</source>
        <translation>20 i/s</translation>
    </message>
    <message>
        <source>256kbps</source>
        <translation>256 kbit/s</translation>
    </message>
    <message>
        <source>25fps</source>
        <translation>25 i/s</translation>
    </message>
    <message>
        <source>30fps</source>
        <translation>30 i/s</translation>
    </message>
    <message>
        <source>384kbps</source>
        <translation>384 kbit/s</translation>
    </message>
    <message>
        <source>512kbps</source>
        <translation>512 kbit/s</translation>
    </message>
    <message>
        <source>768kbps</source>
        <translation>768 kbit/s</translation>
    </message>
    <message>
        <source>After 15 Seconds</source>
        <translation>Après 15 secondes</translation>
    </message>
    <message>
        <source>After 30 Seconds</source>
        <translation>Après 30 secondes</translation>
    </message>
    <message>
        <source>After 5 Seconds</source>
        <translation>Après 5 secondes</translation>
    </message>
    <message>
        <source>Always Forward</source>
        <translation>Toujours renvoyer</translation>
    </message>
    <message>
        <source>Always forward number is invalid!</source>
        <translation>Le numéro de « Toujours renvoyer » n’est pas valide !</translation>
    </message>
    <message>
        <source>Anonymous Call Off code can't be empty!</source>
        <translation>Saisissez le code d’arrêt de l’appel anonyme !</translation>
    </message>
    <message>
        <source>Anonymous Call Rejection</source>
        <translation>Rejet d’appels anonymes</translation>
    </message>
    <message>
        <source>Auto Answer Type</source>
        <translation>Délai de la réponse automatique</translation>
    </message>
    <message>
        <source>Bandwidth</source>
        <translation>Bande passante</translation>
    </message>
    <message>
        <source>Busy Forward</source>
        <translation>Renvoyer si occupé</translation>
    </message>
    <message>
        <source>Busy forward number is invalid!</source>
        <translation>Le numéro de « Renvoyer si occupé » n’est pas valide !</translation>
    </message>
    <message>
        <source>Can't forward to own number!</source>
        <translation>Impossible de renvoyer vers son propre numéro !</translation>
    </message>
    <message>
        <source>Directly</source>
        <translation>Immédiatement</translation>
    </message>
    <message>
        <source>Effect On PSTN</source>
        <translation>Vaut aussi pour la ligne RTC</translation>
    </message>
    <message>
        <source>Enable Auto Answer</source>
        <translation>Activer la réponse automatique</translation>
    </message>
    <message>
        <source>Enable Call Waiting</source>
        <translation>Activer le double appel</translation>
    </message>
    <message>
        <source>Enabled</source>
        <translation>Activé</translation>
    </message>
    <message>
        <source>Forward Setting</source>
        <translation>Renvoi d’appel</translation>
    </message>
    <message>
        <source>Frame Rate</source>
        <translation>Images par seconde</translation>
    </message>
    <message>
        <source>Hotline Delay(0~10s)</source>
        <translation>Appel direct après (0–10 s)</translation>
    </message>
    <message>
        <source>Hotline Number</source>
        <translation>Numéro d’appel direct</translation>
    </message>
    <message>
        <source>Key #</source>
        <translation>Touche #</translation>
    </message>
    <message>
        <source>Key *</source>
        <translation>Touche *</translation>
    </message>
    <message>
        <source>Local Video</source>
        <translation>Vidéo locale</translation>
    </message>
    <message>
        <source>No Answer Forward</source>
        <translation>Renvoyer sans réponse</translation>
    </message>
    <message>
        <source>No answer forward number is invalid!</source>
        <translation>Le numéro de « Renvoyer sans réponse » n’est pas valide !</translation>
    </message>
    <message>
        <source>No answer time is not within 1-100 seconds!</source>
        <translation>Le délai sans réponse n’est pas entre 1 et 100 secondes !</translation>
    </message>
    <message>
        <source>Off</source>
        <translation>Désactivé</translation>
    </message>
    <message>
        <source>Off Code</source>
        <translation>Code d’arrêt</translation>
    </message>
    <message>
        <source>On</source>
        <translation>Activé</translation>
    </message>
    <message>
        <source>On Code</source>
        <translation>Code d’activation</translation>
    </message>
    <message>
        <source>PSTN Call</source>
        <translation>Appel RTC</translation>
    </message>
    <message>
        <source>Preferred Call Type</source>
        <translation>Type d’appel préféré</translation>
    </message>
    <message>
        <source>Rejection Off code can't be empty!</source>
        <translation>Saisissez le code d’arrêt du rejet !</translation>
    </message>
    <message>
        <source>Time limited(0-10s)!</source>
        <translation>Le délai va de 0 à 10 secondes !</translation>
    </message>
    <message>
        <source>Video Call</source>
        <translation>Appel vidéo</translation>
    </message>
    <message>
        <source>Voice Call</source>
        <translation>Appel vocal</translation>
    </message>
    <message>
        <source>Add call</source>
        <translation>Nouvel appel</translation>
    </message>
    <message>
        <source>Dial</source>
        <translation>Composer</translation>
    </message>
    <message>
        <source>Forward</source>
        <comment>a call that rings</comment>
        <translation>Renvoyer</translation>
    </message>
    <message>
        <source>Video</source>
        <comment>in a call</comment>
        <translation>Vidéo</translation>
    </message>
    <message>
        <source>Held by the other side</source>
        <translation>Mis en attente par le correspondant</translation>
    </message>
    <message>
        <source>Not confirmed yet</source>
        <translation>Pas encore confirmé</translation>
    </message>
    <message>
        <source>Forwarded by %1</source>
        <translation>Renvoyé par %1</translation>
    </message>
    <message>
        <source>Forwarded to %1</source>
        <translation>Renvoyé vers %1</translation>
    </message>
    <message>
        <source>Transferred to %1</source>
        <translation>Transféré à %1</translation>
    </message>
    <message>
        <source>Hold</source>
        <translation>Attente</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Clavier</translation>
    </message>
    <message>
        <source>On hold</source>
        <translation>En attente</translation>
    </message>
    <message>
        <source>Resume</source>
        <translation>Reprendre</translation>
    </message>
    <message>
        <source>Swap</source>
        <translation>Permuter</translation>
    </message>
    <message>
        <source>Conference</source>
        <translation>Conférence</translation>
    </message>
    <message>
        <source>Split</source>
        <translation>Séparer</translation>
    </message>
    <message>
        <source>These calls cannot be connected</source>
        <translation>Impossible de relier ces appels</translation>
    </message>
    <message>
        <source>The other side refuses the transfer</source>
        <translation>Le correspondant refuse le transfert</translation>
    </message>
    <message>
        <source>Transfer</source>
        <translation>Transférer</translation>
    </message>
    <message>
        <source>2N</source>
        <translation>2N</translation>
    </message>
    <message>
        <source>Access Pin</source>
        <translation>Code PIN d’accès</translation>
    </message>
    <message>
        <source>Account is invalid!</source>
        <translation>Le compte n’est pas valide !</translation>
    </message>
    <message>
        <source>Advance</source>
        <translation>Avancé</translation>
    </message>
    <message>
        <source>Basic</source>
        <translation>Général</translation>
    </message>
    <message>
        <source>Custom</source>
        <translation>Autre</translation>
    </message>
    <message>
        <source>Device Model</source>
        <translation>Modèle</translation>
    </message>
    <message>
        <source>Display Name already exists!</source>
        <translation>Ce nom affiché existe déjà !</translation>
    </message>
    <message>
        <source>Display Name is invalid!</source>
        <translation>Le nom affiché n’est pas valide !</translation>
    </message>
    <message>
        <source>Door Phone 2</source>
        <translation>Interphone 2</translation>
    </message>
    <message>
        <source>Door Phone 3</source>
        <translation>Interphone 3</translation>
    </message>
    <message>
        <source>Door Phone 4</source>
        <translation>Interphone 4</translation>
    </message>
    <message>
        <source>Fullscreen</source>
        <translation>Plein écran</translation>
    </message>
    <message>
        <source>IP Camera 2</source>
        <translation>Caméra IP 2</translation>
    </message>
    <message>
        <source>IP Camera 3</source>
        <translation>Caméra IP 3</translation>
    </message>
    <message>
        <source>IP Camera 4</source>
        <translation>Caméra IP 4</translation>
    </message>
    <message>
        <source>IP Camera Setting</source>
        <translation>Réglages de la caméra IP</translation>
    </message>
    <message>
        <source>Index</source>
        <translation>N°</translation>
    </message>
    <message>
        <source>Line1</source>
        <translation>Ligne 1</translation>
    </message>
    <message>
        <source>Line2</source>
        <translation>Ligne 2</translation>
    </message>
    <message>
        <source>Line3</source>
        <translation>Ligne 3</translation>
    </message>
    <message>
        <source>Line4</source>
        <translation>Ligne 4</translation>
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
        <translation>Ne pas envoyer le son</translation>
    </message>
    <message>
        <source>Not Send Video</source>
        <translation>Ne pas envoyer la vidéo</translation>
    </message>
    <message>
        <source>Refuse New Incoming Call</source>
        <translation>Refuser les autres appels</translation>
    </message>
    <message>
        <source>Unlock Pin</source>
        <translation>Code PIN d’ouverture</translation>
    </message>
    <message>
        <source>Voice Mail Setting</source>
        <translation>Réglages de la messagerie vocale</translation>
    </message>
    <message>
        <source>Voice mail number is invalid!</source>
        <translation>Le numéro de messagerie vocale n’est pas valide !</translation>
    </message>
    <message>
        <source>Voice mail number is invalid!!</source>
        <translation>Le numéro de messagerie vocale n’est pas valide ! !</translation>
    </message>
    <message>
        <source>new</source>
        <translation>nouveaux</translation>
    </message>
    <message>
        <source>old</source>
        <translation>anciens</translation>
    </message>
    <message>
        <source>Open door</source>
        <translation>Ouvrir la porte</translation>
    </message>
    <message>
        <source>Add %1 ?</source>
        <translation>Ajouter %1 ?</translation>
    </message>
    <message>
        <source>Add Stock</source>
        <translation>Ajouter une action</translation>
    </message>
    <message>
        <source>Add stock</source>
        <translation>Ajouter</translation>
    </message>
    <message>
        <source>Ask Price</source>
        <translation>Cours vendeur</translation>
    </message>
    <message>
        <source>Bid Price</source>
        <translation>Cours acheteur</translation>
    </message>
    <message>
        <source>Delete Stock</source>
        <translation>Effacer l’action</translation>
    </message>
    <message>
        <source>Delete stock</source>
        <translation>Effacer</translation>
    </message>
    <message>
        <source>High</source>
        <translation>Plus haut</translation>
    </message>
    <message>
        <source>Input is empty!</source>
        <translation>La saisie est vide !</translation>
    </message>
    <message>
        <source>Low</source>
        <translation>Plus bas</translation>
    </message>
    <message>
        <source>Market Cap</source>
        <translation>Capitalisation</translation>
    </message>
    <message>
        <source>NetWork is not good, please wait for a while!</source>
        <translation>Le réseau est lent, veuillez patienter un instant !</translation>
    </message>
    <message>
        <source>No site information</source>
        <translation>Aucune information sur cette action</translation>
    </message>
    <message>
        <source>Opening Price</source>
        <translation>Ouverture</translation>
    </message>
    <message>
        <source>Prev Closing Price</source>
        <translation>Clôture préc.</translation>
    </message>
    <message>
        <source>Stock is full!</source>
        <translation>La liste des actions est pleine !</translation>
    </message>
    <message>
        <source>The stock is existed!</source>
        <translation>L’action existe déjà !</translation>
    </message>
    <message>
        <source>Unable connect to Stock server, please check network.</source>
        <translation>Le serveur d’actions ne répond pas, veuillez vérifier le réseau.</translation>
    </message>
    <message>
        <source>Updated:</source>
        <translation>Mis à jour :</translation>
    </message>
    <message>
        <source>data exception.</source>
        <translation>Les données sont erronées.</translation>
    </message>
    <message>
        <source>Can't connect</source>
        <translation>Connexion impossible</translation>
    </message>
    <message>
        <source>Set Desktop</source>
        <translation>Sur l’accueil</translation>
    </message>
    <message>
        <source>Succeed to Set Desktop!</source>
        <translation>La météo est maintenant sur l’accueil.</translation>
    </message>
    <message>
        <source>Temperature</source>
        <translation>Température</translation>
    </message>
</context>
</TS>
